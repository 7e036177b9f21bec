#include "plugin/entries.h"

#include <cstdio>

#include "binding/call.h"
#include "framework/link.h"
#include "image/interruption.h"
#include "plugin/guarded.h"

using qorv::dm::guarded;

namespace {

constexpr std::uint32_t oldest_version = 0x030A0000;  // 3.10.0
constexpr char host_too_old[] = "This plugin requires DM 3.10.0 or later.";

void check_host_version()
{
    host_link* link = Gatan::PlugIn::current_link();
    std::uint32_t version = 0;
    if (link && link->table->version(link, &version) && version >= oldest_version) return;
    // A copy of at most 511 characters. It is static because the host may keep the pointer.
    static char text[512];
    std::snprintf(text, sizeof text, "%s", host_too_old);
    Gatan::report_error(Gatan::error_code::message, text);
}

void start(CZXPlugIn& plug_in)
{
    check_host_version();
    qorv::dm::set_interruption_question(Gatan::PlugIn::is_interrupted);
    plug_in.enlist();
    plug_in.Start();
}

void register_floating_windows(CZXPlugIn& plug_in)
{
    plug_in.enlist();
    plug_in.RegisterFloatingWindows();
}

void end(CZXPlugIn& plug_in)
{
    plug_in.End();
    plug_in.tear_down();
    qorv::dm::set_interruption_question(nullptr);
    qorv::binding::function_slot::release_all();
}

}  // namespace

void HOST_CALL PlugInRegisterFloatingWindows() { guarded("PlugIn_RegisterFloatingWindows", register_floating_windows); }

void HOST_CALL PlugInStartup() { guarded("PlugIn_Start", start); }

void HOST_CALL PlugInRun()
{
    guarded("PlugIn_Run", [](CZXPlugIn& plug_in) { plug_in.Run(); });
}

std::int32_t HOST_CALL PlugInRequestClose()
{
    std::int32_t may_close = 0;
    guarded("PlugIn_RequestClose", [&](CZXPlugIn& plug_in) { may_close = plug_in.RequestClose(); });
    return may_close;
}

void HOST_CALL PlugInPrepareClose()
{
    guarded("PlugIn_PrepareClose", [](CZXPlugIn& plug_in) { plug_in.PrepareClose(); });
}

void HOST_CALL PlugInCleanup()
{
    guarded("PlugIn_Cleanup", [](CZXPlugIn& plug_in) { plug_in.Cleanup(); });
}

void HOST_CALL PlugInShutdown() { guarded("PlugIn_End", end); }

void plug_in_about_dialog()
{
    guarded("PlugIn_AboutDialog", [](CZXPlugIn& plug_in) { plug_in.AboutDialog(); });
}

std::int32_t HOST_CALL DMPlugIn_GetVersion() { return HOST_LINK_PROTOCOL; }

void HOST_CALL DMPlugIn_Link_2(host_link* link) { Gatan::PlugIn::set_current_link(link); }
