#pragma once

#include <cstdint>

#include "contract/host_link.h"

#ifdef _WIN32
#define ZENTRIX_ENTRY extern "C" __declspec(dllexport)
#else
#define ZENTRIX_ENTRY extern "C" __attribute__((visibility("default")))
#endif

/// The library's exported entry points, in the order in which a host calls them. No exception leaves them: errors are
/// reported to the host's error manager, and the entry returns normally.

/// Version of the linking protocol.
ZENTRIX_ENTRY std::int32_t HOST_CALL DMPlugIn_GetVersion();
/// Adds a reference to the host's link, stores it, and releases the previous link; null only releases. The current link
/// again changes nothing. Host objects that the library still holds are not released: call PlugInShutdown before.
ZENTRIX_ENTRY void HOST_CALL DMPlugIn_Link_2(host_link* link);

ZENTRIX_ENTRY void HOST_CALL PlugInRegisterFloatingWindows();
/// Checks the host's version, registers all script functions and the panel, and checks for the companion package. An
/// old host or a missing package is reported; start-up continues.
ZENTRIX_ENTRY void HOST_CALL PlugInStartup();
ZENTRIX_ENTRY void HOST_CALL PlugInRun();

/// Returns non-zero if the host may close; 0 after an error.
ZENTRIX_ENTRY std::int32_t HOST_CALL PlugInRequestClose();
ZENTRIX_ENTRY void HOST_CALL PlugInPrepareClose();
ZENTRIX_ENTRY void HOST_CALL PlugInCleanup();
/// Ends the plug-in: deletes the core object, releases the handler and the tag group, withdraws all registrations and
/// releases the cached host functions.
ZENTRIX_ENTRY void HOST_CALL PlugInShutdown();

/// Opens the about dialog in the same frame; not exported.
void plug_in_about_dialog();
