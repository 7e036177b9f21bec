#include "host/engine/engine_state.h"
#include "host/engine/marshalling.h"

// The contract's table. Each entry runs on the main thread unless it says otherwise, and each is guarded: an exception
// becomes what the contract has for failure.

namespace zentrix::host {

namespace {

using inside = engine::inside;

constexpr std::int32_t done = 0;
constexpr std::int32_t failed = 1;

inside& inside_of(host_link* link)
{
    static_assert(offsetof(inside::link_with_owner, link) == 0, "the library's link is the start of ours");
    return *reinterpret_cast<inside::link_with_owner*>(link)->owner;
}

bool right_thread(inside& in, const char* entry)
{
    if (in.on_main_thread()) return true;
    in.records->add_violation(std::string{entry} + " is called on another thread than the main one.");
    return false;
}

/// Runs `work` on the main thread only; `otherwise` is the answer of a failure.
template <class Work, class Answer>
Answer guarded(host_link* link, const char* entry, Answer otherwise, Work work) noexcept
{
    try {
        auto& in = inside_of(link);
        if (!right_thread(in, entry)) return otherwise;
        return work(in);
    } catch (...) {
        return otherwise;
    }
}

/// The same for entries that tell a throwable.
template <class Work>
std::int32_t failing_with(host_link* link, const char* entry, host_object** error, Work work) noexcept
{
    return guarded(link, entry, failed, [&](inside& in) {
        const auto tell = [&](const char* text) {
            if (error) *error = in.handles.give(std::make_shared<throwable>(text));
            return failed;
        };
        try {
            work(in);
            return done;
        } catch (const std::exception& thrown) {
            return tell(thrown.what());
        } catch (...) {
            return tell("An unknown error occurred in the host.");
        }
    });
}

/// A text of the library's that may not be null.
std::string given_text(inside& in, const char* text)
{
    if (text) return text;
    in.records->add_violation("A null text is passed.");
    throw script_error{"A text is needed."};
}

void HOST_CALL link_add_reference(host_link* link) { ++inside_of(link).link_references; }

void HOST_CALL link_release(host_link* link)
{
    auto& in = inside_of(link);
    if (--in.link_references >= 0) return;
    ++in.link_references;
    in.records->add_violation("The link is released more often than it was referenced.");
}

void HOST_CALL object_add_reference(host_link* link, host_object* object)
{
    guarded(link, "object_add_reference", 0, [&](inside& in) { return in.handles.add_reference(object), 0; });
}

void HOST_CALL object_release(host_link* link, host_object* object)
{
    guarded(link, "object_release", 0, [&](inside& in) { return in.handles.release(object), 0; });
}

host_object* HOST_CALL string_new(host_link* link, const char* text, std::uint64_t length)
{
    return guarded(link, "string_new", static_cast<host_object*>(nullptr), [&](inside& in) -> host_object* {
        const std::string copy = length ? std::string{text, static_cast<std::size_t>(length)} : std::string{};
        if (in.faults.strikes(fault_point::make_string, copy)) return nullptr;
        return in.handles.give(std::make_shared<string_object>(copy));
    });
}

const char* HOST_CALL string_text(host_link* link, host_object* string, std::uint64_t* length)
{
    return guarded(link, "string_text", static_cast<const char*>(nullptr), [&](inside& in) -> const char* {
        const auto held = std::dynamic_pointer_cast<string_object>(in.handles.get(string));
        if (!held) return nullptr;
        if (length) *length = held->text().size();
        return held->text().c_str();
    });
}

std::int32_t HOST_CALL version(host_link* link, std::uint32_t* number)
{
    return guarded(link, "version", 0, [&](inside& in) {
        if (in.options.version) *number = *in.options.version;
        return in.options.version ? 1 : 0;
    });
}

host_object* HOST_CALL find_function(host_link* link, const char* prototype_text)
{
    return guarded(link, "find_function", static_cast<host_object*>(nullptr), [&](inside& in) -> host_object* {
        const auto wanted = given_text(in, prototype_text);
        if (in.faults.strikes(fault_point::find_function, wanted)) return nullptr;
        return in.handles.give(in.functions.find(wanted));
    });
}

std::string text_in(inside& in, host_object* string)
{
    const auto held = std::dynamic_pointer_cast<string_object>(in.handles.get(string));
    if (held) return held->text();
    in.records->add_violation("Something else than a string is passed where a string is needed.");
    throw script_error{"A string is needed."};
}

host_object* HOST_CALL find_method(host_link* link, host_object* script_object_handle, host_object* name,
                                   host_object* prototype_text)
{
    return guarded(link, "find_method", static_cast<host_object*>(nullptr), [&](inside& in) -> host_object* {
        const auto text = text_in(in, prototype_text);
        if (in.faults.strikes(fault_point::find_method, text)) return nullptr;
        const auto self = std::dynamic_pointer_cast<script_object>(in.handles.get(script_object_handle));
        if (!self) {
            in.records->add_violation("The method \"" + text + "\" is looked for on what is no script object.");
            return nullptr;
        }
        return in.handles.give(self->find_method(text_in(in, name), parse_prototype(text)));
    });
}

/// What frees something does so even when it is made to fail.
bool gives_back(const std::string& name) { return name == "UnlockMemory" || name == "UnregisterCustomTool"; }

std::int32_t HOST_CALL call(host_link* link, host_object* function_handle, const host_value* arguments,
                            std::uint32_t count, host_value* result, host_object** error)
{
    return failing_with(link, "call", error, [&](inside& in) {
        const auto callee = std::dynamic_pointer_cast<function>(in.handles.get(function_handle));
        if (!callee) {
            in.records->add_violation("What is called is no function.");
            throw script_error{"What is called is no function."};
        }
        const std::span given{arguments, count};
        const auto& signature = callee->signature();
        if (!in.faults.strikes(fault_point::call, signature.text))
            return call_for_library(*callee, in.handles, *in.records, given, result);
        const auto text = in.faults.text();
        if (gives_back(signature.name)) call_for_library(*callee, in.handles, *in.records, given, nullptr);
        throw script_error{text};
    });
}

host_object* HOST_CALL throwable_text(host_link* link, host_object* thrown)
{
    return guarded(link, "throwable_text", static_cast<host_object*>(nullptr), [&](inside& in) -> host_object* {
        const auto held = std::dynamic_pointer_cast<throwable>(in.handles.get(thrown));
        if (!held) return nullptr;
        return in.handles.give(std::make_shared<string_object>(held->text()));
    });
}

std::int32_t HOST_CALL register_function(host_link* link, const char* prototype_text, host_native native, void* context,
                                         host_object** error)
{
    return failing_with(link, "register_function", error, [&](inside& in) {
        const auto wanted = given_text(in, prototype_text);
        if (in.faults.strikes(fault_point::register_function, wanted)) throw script_error{in.faults.text()};
        if (!native) throw script_error{"A script function needs a native function."};
        in.functions.add(make_native_function(parse_prototype(wanted), native, context, in.handles, *in.records),
                         origin::library);
    });
}

void HOST_CALL withdraw_function(host_link* link, const char* prototype_text)
{
    guarded(link, "withdraw_function", 0,
            [&](inside& in) { return in.functions.remove(given_text(in, prototype_text), origin::library) ? 1 : 0; });
}

std::int32_t HOST_CALL has_error_manager(host_link* link)
{
    return guarded(link, "has_error_manager", 0, [](inside& in) { return in.options.has_error_manager ? 1 : 0; });
}

void HOST_CALL report_error(host_link* link, std::uint32_t code, const char* text)
{
    try {
        inside_of(link).records->add_error(code, text ? text : "");
    } catch (...) {  // there is nobody left to tell
    }
}

void HOST_CALL trace_add(host_link* link, const char* name, std::int64_t ticks)
{
    try {
        inside_of(link).records->add_trace(name ? name : "", ticks);
    } catch (...) {  // a lost count is not worth more
    }
}

std::int32_t HOST_CALL register_floating_window(host_link* link, const host_floating_window* window,
                                                host_object** error)
{
    return failing_with(link, "register_floating_window", error, [&](inside& in) {
        if (!window || window->size < sizeof *window || !window->title || !window->create || !window->destroy)
            throw script_error{"The floating window's description is not complete."};
        if (in.faults.strikes(fault_point::register_function, window->title)) throw script_error{in.faults.text()};
        if (in.window(window->title) != in.windows.end())
            throw script_error{"A floating window \"" + std::string{window->title} + "\" is registered already."};
        in.windows.push_back({window->title, window->module, window->context, window->create, window->destroy});
    });
}

void HOST_CALL withdraw_floating_window(host_link* link, const char* title)
{
    guarded(link, "withdraw_floating_window", 0, [&](inside& in) {
        const auto found = in.window(given_text(in, title));
        if (found == in.windows.end()) return 0;
        const auto closing = *found;
        in.windows.erase(found);
        if (closing.window) closing.destroy(closing.context, closing.window);
        return 1;
    });
}

}  // namespace

const host_table& the_table() noexcept
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
                                     withdraw_floating_window};
    return table;
}

}  // namespace zentrix::host
