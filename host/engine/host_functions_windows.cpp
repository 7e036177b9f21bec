#include "host/engine/host_functions.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace {

void register_messages(engine_state& state)
{
    state.add_host_function("void OkDialog( string )", [&state](const arguments& passed) -> script_value {
        state.records->add_dialog({passed.text(0), -1});
        return {};
    });
    state.add_host_function("void ShowAlert( dm_string, long )", [&state](const arguments& passed) -> script_value {
        state.records->add_dialog({passed.text(0), passed.integer(1)});
        return {};
    });
    if (!state.options.has_output_window) return;
    state.add_host_function(
        "void WriteOutputWindow( dm_string module_name, uint32 output_type, dm_string text )",
        [&state](const arguments& passed) -> script_value {
            state.records->add_output({passed.text(0), passed.integer_as<std::uint32_t>(1), passed.text(2)});
            return {};
        });
}

}  // namespace

void register_window_functions(engine_state& state)
{
    register_messages(state);
    state.add_host_function("bool DoesFileExist( dm_string )", [&state](const arguments& passed) {
        const auto& path = passed.text(0);
        const auto& file_exists = state.options.file_exists;
        return std::int64_t{file_exists ? file_exists(path) : std::filesystem::exists(system_path(path))};
    });
    state.add_host_function("uint64 RegisterCustomTool( uint64, string, uint64 )", [&state](const arguments& passed) {
        state.custom_tools[++state.last_custom_tool] = passed.text(1);
        return static_cast<std::int64_t>(state.last_custom_tool);
    });
    state.add_host_function("void UnregisterCustomTool( uint64 )", [&state](const arguments& passed) -> script_value {
        if (state.custom_tools.erase(passed.integer_as<std::uint64_t>(0)) == 0)
            throw script_error{"There is no such custom tool."};
        return {};
    });
}

}  // namespace zentrix::host
