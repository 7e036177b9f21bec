#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

#include "host/files/draft_file.h"
#include "host/files/pending_file.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void throw_last_error() { throw std::system_error{errno, std::generic_category()}; }

int descriptor(std::intptr_t handle) { return static_cast<int>(handle); }

/// A draft is locked while its process lives, so an unlocked one is a remnant.
void remove_remnants(const fs::path& folder)
{
    std::error_code ignored;
    for (fs::directory_iterator entry{folder, ignored}, end; entry != end; entry.increment(ignored)) {
        if (process_of_draft(entry->path().filename()) == 0) continue;
        const int file = open(entry->path().c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (file < 0) continue;
        if (flock(file, LOCK_EX | LOCK_NB) == 0) unlink(entry->path().c_str());
        close(file);
    }
}

/// Returns false if another process removed the draft between its creation and the lock.
bool lock_draft(int file)
{
    if (flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    struct stat status
    {};
    return fstat(file, &status) != 0 || status.st_nlink > 0;
}

/// Creates and locks a file; -1 with errno.
int create(const fs::path& path, mode_t mode)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file < 0 || lock_draft(file)) return file;
    close(file);
    errno = EEXIST;
    return -1;
}

/// Copies owner, group and mode as far as permitted. The owner is first, because changing it clears mode bits. If the
/// group cannot be kept, its rights are removed.
void copy_rights(int file, const struct stat& former)
{
    mode_t mode = former.st_mode & 07777;
    if (fchown(file, former.st_uid, former.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), former.st_gid) != 0)
        mode &= ~static_cast<mode_t>(S_IRWXG | S_ISGID);
    static_cast<void>(fchmod(file, mode));  // fails where files have no mode; the draft is readable by its owner only
}

/// Whether the file is on a local file system that is known to report a full disk during fallocate and write. Others,
/// such as NFS, may report it only when the file is flushed.
bool reports_full_disk_at_once(int file)
{
    struct statfs system
    {};
    if (fstatfs(file, &system) != 0) return false;
    switch (static_cast<std::uint32_t>(system.f_type)) {
        case 0xEF53:                   // ext4, and its predecessors
        case 0x58465342:               // XFS
        case 0x9123683E:               // Btrfs
        case 0x01021994: return true;  // tmpfs
        default: return false;
    }
}

/// Waits until the file is on the disk.
void flush(int file)
{
    while (fsync(file) != 0) {
        if (errno == EINVAL) return;  // a file that cannot be waited for
        if (errno != EINTR) throw_last_error();
    }
}

extern "C" void remove_drafts_and_end(int signal)
{
    draft_list::for_each([](const char* path) { unlink(path); });
    std::signal(signal, SIG_DFL);
    raise(signal);
}

}  // namespace

draft_file::draft_file(const fs::path& target) : handle_{-1}
{
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path{"."};
    if (is_time_to_remove_remnants(folder)) remove_remnants(folder);
    struct stat former
    {};
    replaces_ = stat(target.c_str(), &former) == 0;
    do {
        path_ = folder / next_draft_name();
        draft_list::add(path_);
        handle_ = create(path_, replaces_ ? 0600 : 0666);
        if (handle_ >= 0) break;
        const int problem = errno;
        draft_list::remove(path_);
        errno = problem;
    } while (errno == EEXIST);
    if (handle_ < 0) throw_last_error();
    if (replaces_) copy_rights(descriptor(handle_), former);
}

draft_file::~draft_file()
{
    if (handle_ < 0) return;
    unlink(path_.c_str());
    close(descriptor(handle_));
    draft_list::remove(path_);
}

void draft_file::reserve(std::uint64_t bytes)
{
    // The file's size stays 0 until bytes are written, so a power failure does not leave a file of zeros. Not all file
    // systems can reserve; those that cannot say when they are full during writing.
    const int done = fallocate(descriptor(handle_), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(bytes));
    if (done != 0 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) throw_last_error();
}

void draft_file::write(const std::byte* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t written = ::write(descriptor(handle_), bytes, count);
        if (written < 0 && errno != EINTR) throw_last_error();
        if (written < 0) continue;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

void draft_file::move_to(const fs::path& target)
{
    if (replaces_ || !reports_full_disk_at_once(descriptor(handle_))) flush(descriptor(handle_));
    if (rename(path_.c_str(), target.c_str()) != 0) throw_last_error();
    draft_list::remove(path_);
    close(descriptor(handle_));  // not before: it ends the lock. All errors have been reported by now.
    handle_ = -1;
}

bool is_read_only(const fs::path& file)
{
    struct stat status
    {};
    const bool has_no_write_right = stat(file.c_str(), &status) == 0 && (status.st_mode & 0222) == 0;  // root, too
    return has_no_write_right || ::access(file.c_str(), W_OK) != 0;
}

void remove_pending_files_on_signals()
{
    std::signal(SIGXFSZ, SIG_IGN);  // a file beyond the limit is then an error that the program reports
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        if (std::signal(signal, remove_drafts_and_end) == SIG_IGN) std::signal(signal, SIG_IGN);  // as under nohup
}

}  // namespace zentrix::host
