#include <cstdio>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

#include "binding/call.h"
#include "binding/host_functions.h"
#include "framework/link.h"

namespace qorv::binding {
namespace {

constexpr char prototype[] = "void WriteOutputWindow( dm_string module_name, uint32 output_type, dm_string text )";

bool host_has_output_window()
{
    host_link* link = Gatan::PlugIn::current_link();
    return link && function_ref::adopt(link->table->find_function(link, prototype));
}

void to_debugger(const char* text)
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
    if (!host_has_output_window()) return to_debugger("No DM output window\n");
    static function_slot slot{prototype};
    call<void>(slot, module_name, output_type, text);
}

}  // namespace qorv::binding
