#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <thread>

#include "host/batch/worker_process.h"

namespace zentrix::host {

/// A socket and not a pipe: a write after the worker's end is an error and not a signal, which would end this process.
struct worker_process::connection
{
    int socket = -1;
    pid_t process = -1;
    int status = 0;

    void disconnect()
    {
        if (socket >= 0) close(socket);
        socket = -1;
    }
    void wait()
    {
        if (process < 0) return;
        while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
        }
        process = -1;
    }
    ~connection()
    {
        disconnect();
        wait();
    }
};

namespace {

[[noreturn]] void throw_error(int code) { throw std::system_error{code, std::generic_category()}; }

/// Starts this program with the socket as its standard input and output.
pid_t start_program(int socket)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, socket, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, socket, STDOUT_FILENO);
    char program[] = "/proc/self/exe", argument[] = "--worker";
    char* const words[] = {program, argument, nullptr};
    pid_t process = -1;
    const int problem = posix_spawn(&process, program, &actions, nullptr, words, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (problem != 0) throw_error(problem);
    return process;
}

}  // namespace

worker_process::worker_process() : connection_{std::make_unique<connection>()}
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw_error(errno);
    connection_->socket = ends[0];
    try {
        connection_->process = start_program(ends[1]);
    } catch (...) {
        close(ends[1]);
        throw;
    }
    close(ends[1]);
}

worker_process::~worker_process() = default;

bool worker_process::send(const std::string& line)
{
    const std::string bytes = line + "\n";
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(connection_->socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

bool worker_process::read_more()
{
    char bytes[4096];
    ssize_t count = -1;
    do count = read(connection_->socket, bytes, sizeof bytes);
    while (count < 0 && errno == EINTR);
    if (count > 0) received_.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
}

std::string worker_process::how_it_ended()
{
    connection_->disconnect();
    connection_->wait();
    const int status = connection_->status;
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        // A signal to all processes of a job, such as Ctrl-C, ends this one meanwhile, and nothing needs to be said.
        if (signal == SIGINT || signal == SIGTERM || signal == SIGHUP)
            std::this_thread::sleep_for(std::chrono::milliseconds{300});
        return "was ended by signal " + std::to_string(signal);
    }
    return "ended with code " + std::to_string(WEXITSTATUS(status));
}

void end_with_parent()
{
    // The end of the input ends an idle worker. The signal ends a busy one, which then removes its unfinished file.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void limit_threads_of_workers(int threads) { setenv("OMP_NUM_THREADS", std::to_string(threads).c_str(), 1); }

}  // namespace zentrix::host
