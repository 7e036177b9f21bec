#include "binding/call.h"

#include <cstddef>
#include <mutex>
#include <new>

#include "framework/link.h"
#include "framework/plugin_main.h"

namespace qorv::binding {
namespace {

constexpr char not_found[] = "A function of the following prototype can not be found:\n\n";
constexpr char null_dispatch[] = "Attempt to dispatch off a null object.";
constexpr char no_host[] = "There is no host.";

function_slot* first_slot = nullptr;  // of those that were ever used

/// Never destroyed, as a host may shut the library down after the end of static objects.
std::mutex& slots_access()
{
    alignas(std::mutex) static std::byte memory[sizeof(std::mutex)];
    static std::mutex& access = *new (memory) std::mutex;
    return access;
}

host_link* require_link()
{
    host_link* link = Gatan::PlugIn::current_link();
    if (!link) throw Gatan::gatan_exception{no_host};
    return link;
}

}  // namespace

function_slot::~function_slot()
{
    function_slot** place = &first_slot;
    while (*place && *place != this) place = &(*place)->next_;
    if (*place) *place = next_;
}

const function_ref& function_slot::find()
{
    const std::lock_guard guard{slots_access()};
    host_link* link = Gatan::PlugIn::current_link();
    if (function_ || !link) return function_;
    function_ = function_ref::adopt(link->table->find_function(link, prototype_));
    if (!is_listed_) {
        next_ = std::exchange(first_slot, this);
        is_listed_ = true;
    }
    return function_;
}

const function_ref& function_slot::require()
{
    require_link();
    if (!find()) throw Gatan::gatan_exception{std::string{not_found} + prototype_};
    return function_;
}

void function_slot::release_all() noexcept
{
    for (function_slot* slot = first_slot; slot; slot = slot->next_) slot->function_ = {};
}

void details::invoke(const function_ref& function, const host_value* arguments, std::uint32_t count, host_value* result)
{
    host_link* link = require_link();
    host_object* error = nullptr;
    if (link->table->call(link, function.get(), arguments, count, result, &error) == 0) return;
    throwable_ref throwable = throwable_ref::share(error);
    throw host_error{Gatan::PlugIn::take_error_text(link, error, "A call of the host failed."), std::move(throwable)};
}

function_ref find_method(const script_object_ref& object, std::string_view name, std::string_view prototype)
{
    if (!object) throw Gatan::gatan_exception{null_dispatch};
    host_link* link = require_link();
    const string_ref name_string = make_string(name);
    const string_ref prototype_string = make_string(prototype);
    auto method =
        function_ref::adopt(link->table->find_method(link, object.get(), name_string.get(), prototype_string.get()));
    if (!method) throw Gatan::gatan_exception{not_found + std::string{prototype}};
    return method;
}

}  // namespace qorv::binding
