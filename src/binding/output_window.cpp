#include "binding/output_window.h"

#include <cstdio>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

#include "binding/host_functions.h"

namespace qorv::binding {
namespace {

constinit host_function<void(std::string_view module_name, std::uint32_t output_type, std::string_view text)>
    host_window{"void WriteOutputWindow( dm_string module_name, uint32 output_type, dm_string text )"};

constexpr std::uint32_t warning = 1;  // output type

void write_to_debugger(const char* text)
{
#ifdef _WIN32
    OutputDebugStringA(text);
#else
    std::fputs(text, stderr);
#endif
}

}  // namespace

void WriteOutputWindow(std::string_view module_name, std::uint32_t output_type, std::string_view text)
{
    if (host_window.exists())
        host_window(module_name, output_type, text);
    else
        write_to_debugger("No DM output window\n");
}

void log_lost_error(const char* what, const std::exception& error) noexcept
{
    try {
        WriteOutputWindow("Zentrix", warning, std::string{what} + " ended with an error: " + error.what() + "\n");
    } catch (...) {  // neither the window nor memory for the line is available
    }
}

}  // namespace qorv::binding
