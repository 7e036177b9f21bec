#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "functions/system/process.h"

extern char** environ;

namespace qorv::platform {
namespace {

void wait_for(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) == -1 && errno == EINTR) {
    }
}

/// Runs a program whose parent ends at once, so that the system's first process collects it.
void run_detached(const char* const arguments[])
{
    const pid_t middle = fork();
    if (middle == 0) {
        // Only calls that are safe between fork and exec.
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
