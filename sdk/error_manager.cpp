#include "sdk/error_manager.h"

#include <cstdio>

#ifdef _WIN32
#include <windows.h>

#include <comdef.h>
#endif

#include "sdk/link.h"

namespace Gatan {
namespace {

void to_debugger(const char* text) noexcept
{
#ifdef _WIN32
    OutputDebugStringA(text);
#else
    std::fprintf(stderr, "%s\n", text);
#endif
}

#ifdef _WIN32
void report_com_error(const _com_error& error) noexcept
try {
    const _bstr_t description = error.Description();
    if (const char* text = description.length() ? static_cast<const char*>(description) : nullptr)
        report_error(error_code::message, text);
    else
        report_error(error_code::com_error, "A COM error occurred.");
} catch (...) {
    report_error(error_code::com_error, "A COM error occurred.");
}
#endif

}  // namespace

void ErrorManager::HandleExceptionError(error_code code, const char* text) noexcept
{
    if (host_link* link = PlugIn::current_link())
        link->table->report_error(link, static_cast<std::uint32_t>(code), text);
    else
        to_debugger(text);
}

void ErrorManager::HandleExceptionError(const std::exception& error) noexcept
{
    const auto* host_error = dynamic_cast<const gatan_exception*>(&error);
    HandleExceptionError(host_error ? host_error->code() : error_code::message, error.what());
}

ErrorManager* GetErrorManager() noexcept
{
    static ErrorManager manager;
    host_link* link = PlugIn::current_link();
    return link && link->table->has_error_manager(link) ? &manager : nullptr;
}

void report_error(error_code code, const char* text) noexcept
{
    if (ErrorManager* manager = GetErrorManager())
        manager->HandleExceptionError(code, text);
    else
        ErrorManager{}.HandleExceptionError(code, text);
}

void report_current_exception() noexcept
{
    try {
        throw;
    } catch (const gatan_exception& error) {
        report_error(error.code(), error.what());
    } catch (const std::exception& error) {
        report_error(error_code::message, error.what());
    }
#ifdef _WIN32
    catch (const _com_error& error) {
        report_com_error(error);
    }
#endif
    catch (...) {
        report_error(error_code::unknown_exception, "An unknown exception occurred.");
    }
}

}  // namespace Gatan
