#include "binding/native.h"

#include <stdexcept>

#include "binding/call.h"
#include "binding/host_functions.h"
#include "contract/prototype.h"

namespace qorv::binding::details {
namespace {

host_object* throwable_with(const char* text) noexcept
try {
    return NewThrowableFromString(text).detach();
} catch (const host_error& failed) {
    return throwable_ref{failed.throwable()}.detach();
} catch (...) {
    return nullptr;
}

}  // namespace

void throwable_of_current_exception(host_object** error) noexcept
{
    host_object* made = nullptr;
    try {
        throw;
    } catch (const host_error& failed) {
        made = failed.throwable() ? throwable_ref{failed.throwable()}.detach() : throwable_with(failed.what());
    } catch (const std::bad_alloc&) {
        made = throwable_with("There is not enough memory.");
    } catch (const std::exception& failed) {
        made = throwable_with(failed.what());
    } catch (...) {
        made = throwable_with("An unknown exception occurred.");
    }
    if (error)
        *error = made;
    else
        throwable_ref::adopt(made);
}

void require_count(std::uint32_t count, std::size_t expected)
{
    if (count == expected) return;
    throw std::invalid_argument{"The host passed " + std::to_string(count) + " arguments instead of " +
                                std::to_string(expected) + "."};
}

void require_fit(const std::string& prototype, const signature& shape)
{
    const auto parsed = contract::parse_prototype(prototype);
    bool fits = parsed.result.kind == shape.result && parsed.parameters.size() == shape.count;
    for (std::size_t i = 0; fits && i < shape.count; ++i) {
        const auto& type = parsed.parameters[i].type;
        fits = parameter_kind{type.kind, type.cell_kind} == shape.parameters[i];
    }
    if (!fits) throw std::logic_error{"The native function does not fit the prototype \"" + prototype + "\"."};
}

}  // namespace qorv::binding::details
