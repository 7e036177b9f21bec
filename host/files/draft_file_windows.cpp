#include <windows.h>

#include <algorithm>
#include <system_error>

#include "host/files/draft_file.h"
#include "host/files/pending_file.h"
#include "win32/handles.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

/// errno values, because their texts are plain: the system's own end with a full stop and a line break.
[[noreturn]] void throw_last_error()
{
    switch (GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND: throw std::system_error{ENOENT, std::generic_category()};
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION: throw std::system_error{EACCES, std::generic_category()};
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL: throw std::system_error{ENOSPC, std::generic_category()};
        default: throw std::system_error{EIO, std::generic_category()};
    }
}

HANDLE file_of(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }
const std::intptr_t no_file = reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE);

/// Whether a process with this number runs.
bool is_running(unsigned long process)
{
    const win32::unique_kernel_object found{OpenProcess(SYNCHRONIZE, FALSE, process)};
    return found ? WaitForSingleObject(found.get(), 0) == WAIT_TIMEOUT : GetLastError() == ERROR_ACCESS_DENIED;
}

/// A live process closes its draft just before it moves it, so only drafts of ended processes are remnants.
void remove_remnants(const fs::path& folder)
{
    std::error_code ignored;
    for (fs::directory_iterator entry{folder, ignored}, end; entry != end; entry.increment(ignored)) {
        const unsigned long process = process_of_draft(entry->path().filename());
        if (process == 0 || is_running(process)) continue;
        const HANDLE file =
            CreateFileW(entry->path().c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    }
}

/// Whether the file is on a network share, which may report errors only when the file is flushed.
bool may_be_remote(const fs::path& file)
{
    wchar_t volume[MAX_PATH];
    return !GetVolumePathNameW(file.c_str(), volume, MAX_PATH) || GetDriveTypeW(volume) == DRIVE_REMOTE;
}

/// The system ends the process after this; drafts share deletion, so that they can be removed while they are open.
BOOL WINAPI remove_drafts(DWORD)
{
    draft_list::for_each([](const wchar_t* path) { DeleteFileW(path); });
    return FALSE;
}

}  // namespace

draft_file::draft_file(const fs::path& target) : handle_{no_file}
{
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path{"."};
    if (is_time_to_remove_remnants(folder)) remove_remnants(folder);
    replaces_ = GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES;
    do {
        path_ = folder / next_draft_name();
        draft_list::add(path_);
        handle_ = reinterpret_cast<std::intptr_t>(CreateFileW(path_.c_str(), GENERIC_WRITE,
                                                              FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                                                              FILE_ATTRIBUTE_NORMAL, nullptr));
        if (handle_ != no_file) return;
        draft_list::remove(path_);
    } while (GetLastError() == ERROR_FILE_EXISTS);
    throw_last_error();
}

draft_file::~draft_file()
{
    if (handle_ != no_file) CloseHandle(file_of(handle_));
    if (path_.empty()) return;
    DeleteFileW(path_.c_str());
    draft_list::remove(path_);
}

void draft_file::reserve(std::uint64_t) {}

void draft_file::write(const std::byte* bytes, std::size_t count)
{
    while (count > 0) {
        const auto part = static_cast<DWORD>(std::min<std::size_t>(count, 1U << 30));
        DWORD written = 0;
        if (!WriteFile(file_of(handle_), bytes, part, &written, nullptr)) throw_last_error();
        bytes += written;
        count -= written;
    }
}

void draft_file::move_to(const fs::path& target)
{
    if ((replaces_ || may_be_remote(path_)) && !FlushFileBuffers(file_of(handle_))) throw_last_error();
    const bool is_closed = CloseHandle(file_of(handle_));
    handle_ = no_file;
    if (!is_closed) throw_last_error();
    // ReplaceFile keeps the former file's attributes and access rights; it fails when there is none.
    if (!ReplaceFileW(target.c_str(), path_.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) &&
        !MoveFileExW(path_.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        throw_last_error();
    draft_list::remove(path_);
    path_.clear();
}

bool is_read_only(const fs::path& file)
{
    const DWORD attributes = GetFileAttributesW(file.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

void remove_pending_files_on_signals() { SetConsoleCtrlHandler(remove_drafts, TRUE); }

}  // namespace zentrix::host
