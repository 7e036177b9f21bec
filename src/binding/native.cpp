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
} catch (const host_error& failed_too) {
    return throwable_ref{failed_too.throwable()}.detach();
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

void require_count(std::uint32_t got, std::size_t wanted)
{
    if (got == wanted) return;
    throw std::invalid_argument{"The host passed " + std::to_string(got) + " arguments instead of " +
                                std::to_string(wanted) + "."};
}

void require_fit(const std::string& prototype, const signature& shape)
{
    const auto read = contract::parse_prototype(prototype);
    bool fits = read.result.kind == shape.result && read.parameters.size() == shape.count;
    for (std::size_t i = 0; fits && i < shape.count; ++i)
        fits = parameter_kind{read.parameters[i].type.kind, read.parameters[i].type.cell_kind} == shape.parameters[i];
    if (!fits) throw std::logic_error{"The native function does not fit the prototype \"" + prototype + "\"."};
}

}  // namespace qorv::binding::details
