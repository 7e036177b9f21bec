#include "framework/error_manager.h"

#include <cstdio>

#ifdef _WIN32
#include <windows.h>

#include <comdef.h>
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

#ifdef _WIN32
/// The description that a COM error carries, UTF-8; empty when it has none.
std::string description_of(const _com_error& error)
{
    IErrorInfo* info = error.ErrorInfo();
    if (!info) return {};
    BSTR text = nullptr;
    std::string description;
    if (SUCCEEDED(info->GetDescription(&text)) && text) {
        const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
        description.resize(static_cast<std::size_t>(bytes > 1 ? bytes - 1 : 0));
        WideCharToMultiByte(CP_UTF8, 0, text, -1, description.data(), bytes, nullptr, nullptr);
    }
    SysFreeString(text);
    info->Release();
    return description;
}

void report_com_error(const _com_error& error) noexcept
{
    std::string description;
    try {
        description = description_of(error);
    } catch (...) {  // no memory for the text: reported without it
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
