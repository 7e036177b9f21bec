#pragma once

#include <string>

/// Services of the platform that scripts reach through the library. Nothing here reports a failure: a command that
/// cannot be started does nothing.
namespace qorv::platform {

/// Starts a command and returns at once; `command_line` is passed as it stands. On Windows CreateProcess splits it,
/// with no shell; elsewhere /bin/sh reads it, so that its quoting, variables and redirections apply. The process is
/// nobody's child afterwards: it leaves nothing to collect.
void start(const std::string& command_line);

/// The same, and waits until the command ends, however long that takes.
void start_and_wait(const std::string& command_line);

/// Opens a file, folder or address with the program that the user's desktop has for it (ShellExecute; xdg-open).
void open(const std::string& document);

/// Path of a special folder with the platform's separator at its end; empty when there is none.
/// folder   the platform's folder identifier: a CSIDL value, on every platform
/// create   make the folder when it is missing
/// Outside Windows the identifiers of the user's own folders are mapped to the XDG directories: 0x00 and 0x10 desktop,
/// 0x05 documents, 0x0d music, 0x0e videos, 0x15 templates, 0x1a configuration, 0x1c data, 0x27 pictures, 0x28 home.
std::string special_directory(int folder, bool create);

}  // namespace qorv::platform
