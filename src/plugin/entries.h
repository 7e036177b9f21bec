#pragma once

#include <cstdint>

#include "contract/host_link.h"

#ifdef _WIN32
#define ZENTRIX_ENTRY extern "C" __declspec(dllexport)
#else
#define ZENTRIX_ENTRY extern "C" __attribute__((visibility("default")))
#endif

/// The library's exported entry points, in the order in which a host calls them. Nothing is thrown out of any of them:
/// what goes wrong inside is reported to the host's error manager, and the entry returns normally.

/// Version of the linking protocol.
ZENTRIX_ENTRY std::int32_t HOST_CALL DMPlugIn_GetVersion();
/// Takes over the host's link, or releases it (null). The present link again changes nothing.
ZENTRIX_ENTRY void HOST_CALL DMPlugIn_Link_2(host_link* link);

ZENTRIX_ENTRY void HOST_CALL PlugInRegisterFloatingWindows();
/// Checks the host's version and the companion package and registers all script functions and the panel. A host that is
/// too old and a missing package are reported; the start goes on.
ZENTRIX_ENTRY void HOST_CALL PlugInStartup();
ZENTRIX_ENTRY void HOST_CALL PlugInRun();

/// Non-zero: the host may close. 0 after an error.
ZENTRIX_ENTRY std::int32_t HOST_CALL PlugInRequestClose();
ZENTRIX_ENTRY void HOST_CALL PlugInPrepareClose();
ZENTRIX_ENTRY void HOST_CALL PlugInCleanup();
/// Ends the plug-in: the core object, the held handler and tag group, and all registrations go.
ZENTRIX_ENTRY void HOST_CALL PlugInShutdown();

/// The same frame around the about dialog; not exported.
void plug_in_about_dialog();
