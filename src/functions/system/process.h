#pragma once

#include <string>

/// Processes. Failures are not reported: a command that cannot be started has no effect.
namespace qorv::platform {

/// Starts a command and returns at once. On Windows the command line is passed to CreateProcess unchanged, without a
/// shell; elsewhere /bin/sh interprets it. The process is detached and need not be waited for.
void start(const std::string& command_line);

/// Starts a command in the same way and waits without limit until it ends.
void start_and_wait(const std::string& command_line);

/// Opens a file, folder or address with the desktop's default program (ShellExecute; xdg-open).
void open(const std::string& document);

}  // namespace qorv::platform
