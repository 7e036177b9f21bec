#include "plugin/entries.h"

#include <cstdio>

#include "binding/call.h"
#include "framework/link.h"
#include "plugin/app.h"
#include "plugin/guarded.h"
#include "plugin/handler.h"
#include "plugin/plugin.h"

using qorv::dm::guarded;

namespace {

constexpr std::uint32_t oldest_version = 0x030A0000;  // 3.10.0
constexpr char host_too_old[] = "This plugin requires DM 3.10.0 or later.";

void check_host_version()
{
    host_link* link = Gatan::PlugIn::current_link();
    std::uint32_t version = 0;
    if (link && link->table->version(link, &version) && version >= oldest_version) return;
    static char text[512];
    std::snprintf(text, sizeof text, "%s", host_too_old);
    Gatan::report_error(Gatan::error_code::message, text);
}

void start()
{
    check_host_version();
    the_plug_in().enlist();
    the_plug_in().Start();
}

void register_floating_windows()
{
    CZXPlugIn& plug_in = the_plug_in();
    plug_in.enlist();
    plug_in.mark_started();
    plug_in.RegisterFloatingWindows();
}

void end()
{
    the_plug_in().End();
    the_plug_in().tear_down();
}

/// Objects belong to the link that they came through: once it is gone nobody could release them.
void let_go_of_host_objects() noexcept
{
    qorv::dm::release_held();
    qorv::binding::function_slot::forget_all();
}

}  // namespace

void HOST_CALL PlugInRegisterFloatingWindows() { guarded("PlugIn_RegisterFloatingWindows", register_floating_windows); }

void HOST_CALL PlugInStartup() { guarded("PlugIn_Start", start); }

void HOST_CALL PlugInRun()
{
    guarded("PlugIn_Run", [] { the_plug_in().Run(); });
}

std::int32_t HOST_CALL PlugInRequestClose()
{
    std::int32_t may_close = 0;
    guarded("PlugIn_RequestClose", [&] { may_close = the_plug_in().RequestClose(); });
    return may_close;
}

void HOST_CALL PlugInPrepareClose()
{
    guarded("PlugIn_PrepareClose", [] { the_plug_in().PrepareClose(); });
}

void HOST_CALL PlugInCleanup()
{
    guarded("PlugIn_Cleanup", [] { the_plug_in().Cleanup(); });
}

void HOST_CALL PlugInShutdown() { guarded("PlugIn_End", end); }

void plug_in_about_dialog()
{
    guarded("PlugIn_AboutDialog", [] { the_plug_in().AboutDialog(); });
}

std::int32_t HOST_CALL DMPlugIn_GetVersion() { return HOST_LINK_PROTOCOL; }

void HOST_CALL DMPlugIn_Link_2(host_link* link)
{
    Gatan::PlugIn::on_link_change(let_go_of_host_objects);
    Gatan::PlugIn::set_current_link(link);
}
