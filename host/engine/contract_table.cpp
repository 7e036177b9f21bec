#include "host/engine/contract_table.h"

#include "host/engine/engine_state.h"
#include "host/engine/marshalling.h"
#include "host/engine/native_function.h"

// Threads: as the contract says for each function. Every function is guarded: an exception becomes the contract's form
// of failure.

namespace zentrix::host {

namespace {

constexpr std::int32_t done = 0;
constexpr std::int32_t failed = 1;
constexpr host_object* no_object = nullptr;

engine_state& state_of(host_link* link)
{
    static_assert(offsetof(engine_state::link_with_owner, link) == 0, "the library's link is the start of ours");
    return *reinterpret_cast<engine_state::link_with_owner*>(link)->owner;
}

/// Runs `work` on any thread. Returns `failure` when it throws.
template <class Answer, class Work>
Answer guarded_on_any_thread(host_link* link, Answer failure, Work work) noexcept
{
    try {
        return work(state_of(link));
    } catch (...) {
        return failure;
    }
}

/// Runs `work` on the main thread, and in calls that the contract permits on others. Returns `failure` when it throws;
/// also, with a violation, on another thread.
template <class Answer, class Work>
Answer guarded(host_link* link, const char* entry, Answer failure, Work work) noexcept
{
    return guarded_on_any_thread(link, failure, [&](engine_state& state) -> Answer {
        if (state.serves_this_thread()) return work(state);
        state.records->add_violation(std::string{entry} + " is called on a thread other than the main thread.");
        return failure;
    });
}

/// As guarded, for entries that return a throwable on failure.
template <class Work>
std::int32_t guarded_with_error(host_link* link, const char* entry, host_object** error, Work work) noexcept
{
    return guarded(link, entry, failed, [&](engine_state& state) {
        const auto fail = [&](const char* text) {
            if (error) *error = state.handles.give(std::make_shared<throwable>(text));
            return failed;
        };
        try {
            work(state);
            return done;
        } catch (const std::exception& thrown) {
            return fail(thrown.what());
        } catch (...) {
            return fail("An unknown error occurred in the host.");
        }
    });
}

/// A text passed by the library, which must not be null.
std::string required_text(engine_state& state, const char* text)
{
    if (text) return text;
    state.records->add_violation("A null text is passed.");
    throw script_error{"A text is needed."};
}

/// The text of a string object passed by the library.
std::string required_text(engine_state& state, host_object* string)
{
    const auto held = std::dynamic_pointer_cast<string_object>(state.handles.get(string));
    if (held) return held->text();
    state.records->add_violation("An object that is not a string is passed where a string is needed.");
    throw script_error{"A string is needed."};
}

void HOST_CALL link_add_reference(host_link* link)
{
    guarded_on_any_thread(link, done, [](engine_state& state) { return ++state.link_references, done; });
}

void HOST_CALL link_release(host_link* link)
{
    guarded_on_any_thread(link, done, [](engine_state& state) {
        if (--state.link_references >= 0) return done;
        ++state.link_references;
        state.records->add_violation("The link is released more often than it was referenced.");
        return failed;
    });
}

void HOST_CALL object_add_reference(host_link* link, host_object* object)
{
    guarded(link, "object_add_reference", 0,
            [&](engine_state& state) { return state.handles.add_reference(object), 0; });
}

void HOST_CALL object_release(host_link* link, host_object* object)
{
    guarded(link, "object_release", 0, [&](engine_state& state) { return state.handles.release(object), 0; });
}

host_object* HOST_CALL string_new(host_link* link, const char* text, std::uint64_t length)
{
    return guarded(link, "string_new", no_object, [&](engine_state& state) -> host_object* {
        const std::string copy = length ? std::string{text, static_cast<std::size_t>(length)} : std::string{};
        if (state.faults.should_fail(fault_point::make_string, copy)) return nullptr;
        return state.handles.give(std::make_shared<string_object>(copy));
    });
}

const char* HOST_CALL string_text(host_link* link, host_object* string, std::uint64_t* length)
{
    return guarded(link, "string_text", static_cast<const char*>(nullptr), [&](engine_state& state) -> const char* {
        const auto held = std::dynamic_pointer_cast<string_object>(state.handles.get(string));
        if (!held) return nullptr;
        if (length) *length = held->text().size();
        return held->text().c_str();
    });
}

std::int32_t HOST_CALL version(host_link* link, std::uint32_t* number)
{
    return guarded(link, "version", 0, [&](engine_state& state) {
        if (state.options.version) *number = *state.options.version;
        return state.options.version ? 1 : 0;
    });
}

host_object* HOST_CALL find_function(host_link* link, const char* prototype_text)
{
    return guarded(link, "find_function", no_object, [&](engine_state& state) -> host_object* {
        const auto text = required_text(state, prototype_text);
        if (state.faults.should_fail(fault_point::find_function, text)) return nullptr;
        return state.handles.give(state.functions.find(text));
    });
}

host_object* HOST_CALL find_method(host_link* link, host_object* script_object_handle, host_object* name,
                                   host_object* prototype_text)
{
    return guarded(link, "find_method", no_object, [&](engine_state& state) -> host_object* {
        const auto text = required_text(state, prototype_text);
        if (state.faults.should_fail(fault_point::find_method, text)) return nullptr;
        const auto self = std::dynamic_pointer_cast<script_object>(state.handles.get(script_object_handle));
        if (!self) {
            state.records->add_violation("The method \"" + text +
                                         "\" is looked up on an object that is not a script object.");
            return nullptr;
        }
        return state.handles.give(self->find_method(required_text(state, name), parse_prototype(text)));
    });
}

/// Releasing calls still release when a fault is injected, because the library cannot release in another way.
bool is_releasing(const std::string& name) { return name == "UnlockMemory" || name == "UnregisterCustomTool"; }

std::int32_t HOST_CALL call(host_link* link, host_object* function_handle, const host_value* arguments,
                            std::uint32_t count, host_value* result, host_object** error)
{
    return guarded_with_error(link, "call", error, [&](engine_state& state) {
        const auto callee = std::dynamic_pointer_cast<function>(state.handles.get(function_handle));
        if (!callee) {
            state.records->add_violation("The called object is not a function.");
            throw script_error{"The called object is not a function."};
        }
        const std::span passed{arguments, count};
        const auto& signature = callee->signature();
        if (!state.faults.should_fail(fault_point::call, signature.text))
            return call_for_library(*callee, state.handles, *state.records, passed, result);
        const auto text = state.faults.text();
        if (is_releasing(signature.name)) call_for_library(*callee, state.handles, *state.records, passed, nullptr);
        throw script_error{text};
    });
}

host_object* HOST_CALL throwable_text(host_link* link, host_object* thrown)
{
    return guarded(link, "throwable_text", no_object, [&](engine_state& state) -> host_object* {
        const auto held = std::dynamic_pointer_cast<throwable>(state.handles.get(thrown));
        if (!held) return nullptr;
        return state.handles.give(std::make_shared<string_object>(held->text()));
    });
}

std::int32_t HOST_CALL register_function(host_link* link, const char* prototype_text, host_native native, void* context,
                                         host_object** error)
{
    return guarded_with_error(link, "register_function", error, [&](engine_state& state) {
        const auto text = required_text(state, prototype_text);
        if (state.faults.should_fail(fault_point::register_function, text)) throw script_error{state.faults.text()};
        if (!native) throw script_error{"A script function needs a native function."};
        state.functions.add(make_native_function(parse_prototype(text), native, context, state.handles, *state.records),
                            origin::library);
    });
}

void HOST_CALL withdraw_function(host_link* link, const char* prototype_text)
{
    guarded(link, "withdraw_function", 0, [&](engine_state& state) {
        return state.functions.remove(required_text(state, prototype_text), origin::library) ? 1 : 0;
    });
}

std::int32_t HOST_CALL has_error_manager(host_link* link)
{
    return guarded(link, "has_error_manager", 0,
                   [](engine_state& state) { return state.options.has_error_manager ? 1 : 0; });
}

void HOST_CALL report_error(host_link* link, std::uint32_t code, const char* text)
{
    guarded_on_any_thread(link, done, [&](engine_state& state) {
        state.records->add_error(code, text ? text : "");
        return done;
    });
}

void HOST_CALL trace_add(host_link* link, const char* name, std::int64_t ticks)
{
    guarded_on_any_thread(link, done, [&](engine_state& state) {
        state.records->add_trace(name ? name : "", ticks);
        return done;
    });
}

std::int32_t HOST_CALL register_floating_window(host_link* link, const host_floating_window* window,
                                                host_object** error)
{
    return guarded_with_error(link, "register_floating_window", error, [&](engine_state& state) {
        if (!window || window->size < sizeof *window || !window->title || !window->create || !window->destroy)
            throw script_error{"The description of the floating window is incomplete."};
        if (state.faults.should_fail(fault_point::register_function, window->title))
            throw script_error{state.faults.text()};
        if (state.window(window->title) != state.windows.end())
            throw script_error{"A floating window \"" + std::string{window->title} + "\" is already registered."};
        state.windows.push_back({window->title, window->module, window->context, window->create, window->destroy});
    });
}

void HOST_CALL withdraw_floating_window(host_link* link, const char* title)
{
    guarded(link, "withdraw_floating_window", 0, [&](engine_state& state) {
        const auto found = state.window(required_text(state, title));
        if (found == state.windows.end()) return 0;
        const auto closing = *found;
        state.windows.erase(found);
        if (closing.window) closing.destroy(closing.context, closing.window);
        return 1;
    });
}

std::int32_t HOST_CALL is_interrupted(host_link* link)
{
    return guarded(link, "is_interrupted", 0, [](engine_state& state) {
        return state.options.interrupted && state.options.interrupted() ? 1 : 0;
    });
}

}  // namespace

const host_table& contract_table() noexcept
{
    static const host_table table = {link_add_reference,
                                     link_release,
                                     sizeof(host_table),
                                     object_add_reference,
                                     object_release,
                                     string_new,
                                     string_text,
                                     version,
                                     find_function,
                                     find_method,
                                     call,
                                     throwable_text,
                                     register_function,
                                     withdraw_function,
                                     has_error_manager,
                                     report_error,
                                     trace_add,
                                     register_floating_window,
                                     withdraw_floating_window,
                                     is_interrupted};
    return table;
}

}  // namespace zentrix::host
