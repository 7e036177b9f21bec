#include <windows.h>

#include <mutex>
#include <system_error>
#include <vector>

#include "host/batch/worker_process.h"
#include "win32/handles.h"

namespace zentrix::host {

struct worker_process::connection
{
    win32::unique_kernel_object process, to_worker, from_worker;
};

namespace {

[[noreturn]] void throw_last_error()
{
    throw std::system_error{static_cast<int>(GetLastError()), std::system_category()};
}

struct pipe_ends
{
    win32::unique_kernel_object reading, writing;
};

/// A pipe; the worker inherits one end.
pipe_ends new_pipe(bool worker_reads)
{
    HANDLE reading = nullptr, writing = nullptr;
    if (!CreatePipe(&reading, &writing, nullptr, 0)) throw_last_error();
    pipe_ends ends{win32::unique_kernel_object{reading}, win32::unique_kernel_object{writing}};
    if (!SetHandleInformation(worker_reads ? reading : writing, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT))
        throw_last_error();
    return ends;
}

std::wstring path_of_this_program()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    if (path.empty()) throw_last_error();
    return path;
}

}  // namespace

worker_process::worker_process() : connection_{std::make_unique<connection>()}
{
    // One at a time, so that no worker inherits the ends of another's pipes.
    static std::mutex one_at_a_time;
    const std::lock_guard guard{one_at_a_time};
    pipe_ends input = new_pipe(true), output = new_pipe(false);
    const std::wstring program = path_of_this_program();
    std::wstring command = L"\"" + program + L"\" --worker";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input.reading.get();
    start.hStdOutput = output.writing.get();
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made))
        throw_last_error();
    CloseHandle(made.hThread);
    connection_->process.reset(made.hProcess);
    connection_->to_worker = std::move(input.writing);
    connection_->from_worker = std::move(output.reading);
}

worker_process::~worker_process() { how_it_ended(); }

bool worker_process::send(const std::string& line)
{
    const std::string bytes = line + "\n";
    DWORD sent = 0;
    for (std::size_t done = 0; done < bytes.size(); done += sent)
        if (!WriteFile(connection_->to_worker.get(), bytes.data() + done, static_cast<DWORD>(bytes.size() - done),
                       &sent, nullptr))
            return false;
    return true;
}

bool worker_process::read_more()
{
    char bytes[4096];
    DWORD count = 0;
    if (!ReadFile(connection_->from_worker.get(), bytes, sizeof bytes, &count, nullptr)) return false;
    received_.append(bytes, count);
    return count > 0;
}

std::string worker_process::how_it_ended()
{
    connection_->to_worker.reset();
    WaitForSingleObject(connection_->process.get(), INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(connection_->process.get(), &code);
    return "ended with code " + std::to_string(code);
}

void end_with_parent() {}  // the end of the input ends it, after the file that it is working on

void limit_threads_of_workers(int threads)
{
    SetEnvironmentVariableW(L"OMP_NUM_THREADS", std::to_wstring(threads).c_str());
}

}  // namespace zentrix::host
