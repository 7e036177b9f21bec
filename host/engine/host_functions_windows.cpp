#include "host/engine/arguments.h"
#include "host/engine/engine_state.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace {

using values = std::span<const script_value>;

void add_messages(engine::inside& to)
{
    to.add_host_function("void OkDialog( string )", [&to](values list) -> script_value {
        to.records->add_dialog({arguments{list}.text(0), -1});
        return {};
    });
    to.add_host_function("void ShowAlert( dm_string, long )", [&to](values list) -> script_value {
        const arguments given{list};
        to.records->add_dialog({given.text(0), given.integer(1)});
        return {};
    });
    if (!to.options.has_output_window) return;
    to.add_host_function("void WriteOutputWindow( dm_string module_name, uint32 output_type, dm_string text )",
                         [&to](values list) -> script_value {
                             const arguments given{list};
                             to.records->add_output({given.text(0), given.integer_as<std::uint32_t>(1), given.text(2)});
                             return {};
                         });
}

}  // namespace

void add_window_functions(engine::inside& to)
{
    add_messages(to);
    to.add_host_function("bool DoesFileExist( dm_string )", [&to](values list) {
        const auto& path = arguments{list}.text(0);
        const bool exists =
            to.options.file_exists ? to.options.file_exists(path) : std::filesystem::exists(system_path(path));
        return std::int64_t{exists};
    });
    to.add_host_function("uint64 RegisterCustomTool( uint64, string, uint64 )", [&to](values list) {
        to.custom_tools[++to.last_custom_tool] = arguments{list}.text(1);
        return static_cast<std::int64_t>(to.last_custom_tool);
    });
    to.add_host_function("void UnregisterCustomTool( uint64 )", [&to](values list) -> script_value {
        if (to.custom_tools.erase(arguments{list}.integer_as<std::uint64_t>(0)) == 0)
            throw script_error{"There is no such custom tool."};
        return {};
    });
}

}  // namespace zentrix::host
