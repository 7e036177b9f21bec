#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>

namespace zentrix::host {

class draft_file;

/// A file that appears in its place only when it is complete. It is written as ".zentrix-<process>-<number>.part" in
/// the same folder and moved by `commit`. Without a commit it is removed, and a former file stays as it was. Files left
/// by killed processes are removed when another process writes its first file to the folder.
///
/// A former file's mode is kept, its owner and group as far as the system permits. Other hard links to it keep the
/// former contents. A symbolic link stays, and the file that it points to is replaced or created.
class pending_file
{
  public:
    /// Throws  file_error when the folder does not exist or cannot be written, when `target` is read-only or not a
    ///         regular file, and for links that form a loop
    explicit pending_file(const std::filesystem::path& target);
    ~pending_file();
    pending_file(const pending_file&) = delete;
    pending_file& operator=(const pending_file&) = delete;

    /// Announces how many bytes will be written; optional. Throws  file_error when the disk has not as many
    void reserve(std::uint64_t bytes);

    /// Appends bytes. Throws  file_error, for example when the disk is full
    void write(const void* bytes, std::size_t count);

    /// Moves the file to its place. Call once, last. A file that replaces another is flushed to the disk before, so
    /// that a power failure leaves one of the two. A new file is flushed before, too, so that errors of network shares,
    /// for example, come before the name appears. It is not flushed on local drives (Windows) and on ext4, XFS, Btrfs
    /// and tmpfs (Linux), because these report a full disk during `reserve` or `write`. It is then left to the system's
    /// cache, and a power failure within the next seconds may lose its contents.
    /// Throws  file_error; a former file is then as it was
    void commit();

  private:
    std::filesystem::path target_;
    std::unique_ptr<draft_file> draft_;
};

/// From now on pending files are removed when the user or the system ends the process: SIGINT, SIGTERM, SIGHUP, SIGQUIT
/// and SIGPIPE, console events on Windows. For programs; a library must not install handlers in a process of others.
void remove_pending_files_on_signals();

}  // namespace zentrix::host
