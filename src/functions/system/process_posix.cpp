#include "functions/system/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

extern char** environ;

namespace qorv::platform {
namespace {

void wait_for(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) == -1 && errno == EINTR) {
    }
}

/// Runs a program as an orphan: its parent ends at once, so that init reaps it.
void run_detached(const char* const arguments[])
{
    const pid_t middle = fork();
    if (middle == 0) {
        // Only async-signal-safe calls are allowed here.
        setsid();
        if (fork() == 0) {
            execvp(arguments[0], const_cast<char* const*>(arguments));
            _exit(127);
        }
        _exit(0);
    }
    if (middle > 0) wait_for(middle);
}

}  // namespace

void start(const std::string& command_line)
{
    const char* const arguments[] = {"/bin/sh", "-c", command_line.c_str(), nullptr};
    run_detached(arguments);
}

void start_and_wait(const std::string& command_line)
{
    const char* const arguments[] = {"/bin/sh", "-c", command_line.c_str(), nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, arguments[0], nullptr, nullptr, const_cast<char* const*>(arguments), environ) == 0)
        wait_for(process);
}

void open(const std::string& document)
{
    const char* const arguments[] = {"xdg-open", document.c_str(), nullptr};
    run_detached(arguments);
}

}  // namespace qorv::platform
