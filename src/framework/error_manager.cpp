#include "framework/error_manager.h"

#include <cstdio>

#ifdef _WIN32
#include <windows.h>

#include <comdef.h>

#include <boost/nowide/convert.hpp>
#endif

#include "framework/link.h"

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

/// The host's error manager, or `temporary` if the host has none.
ErrorManager& manager_or(ErrorManager&& temporary) noexcept
{
    ErrorManager* manager = GetErrorManager();
    return manager ? *manager : temporary;
}

#ifdef _WIN32
/// The description of a COM error, UTF-8; empty when it has none.
std::string description_of(const _com_error& error)
{
    IErrorInfo* info = error.ErrorInfo();
    if (!info) return {};
    BSTR text = nullptr;
    std::string description;
    if (SUCCEEDED(info->GetDescription(&text)) && text) description = boost::nowide::narrow(text);
    SysFreeString(text);
    info->Release();
    return description;
}

void report_com_error(const _com_error& error) noexcept
{
    std::string description;
    try {
        description = description_of(error);
    } catch (...) {  // no memory for the text; report the error without it
    }
    if (description.empty())
        report_error(error_code::com_error, "A COM error occurred.");
    else
        report_error(error_code::message, description.c_str());
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
    manager_or(ErrorManager{}).HandleExceptionError(code, text);
}

void report_current_exception() noexcept
{
    try {
        throw;
    } catch (const std::exception& error) {
        manager_or(ErrorManager{}).HandleExceptionError(error);
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
