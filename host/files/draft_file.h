#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace zentrix::host {

/// A new file under a temporary name, see pending_file. All functions throw std::system_error.
class draft_file
{
  public:
    /// Creates the draft in the folder of `target` with the rights of `target`, if that exists, and sometimes removes
    /// drafts of processes that have ended, see is_time_to_remove_remnants.
    explicit draft_file(const std::filesystem::path& target);
    /// Removes the draft unless it was moved.
    ~draft_file();
    draft_file(const draft_file&) = delete;
    draft_file& operator=(const draft_file&) = delete;

    /// Takes the space for a new file of this size at once, which is faster than piece by piece.
    void reserve(std::uint64_t bytes);
    void write(const std::byte* bytes, std::size_t count);
    /// See pending_file::commit.
    void move_to(const std::filesystem::path& target);

  private:
    std::filesystem::path path_;
    std::intptr_t handle_;   ///< of the open file
    bool replaces_ = false;  ///< whether the target existed
};

/// Whether an existing file may not be written.
bool is_read_only(const std::filesystem::path& file);

/// A name for a draft that this process has not used yet.
std::filesystem::path next_draft_name();
/// The process that the name of a draft names; 0 for other names.
unsigned long process_of_draft(const std::filesystem::path& name);

/// Whether this process should look through a folder for drafts of processes that have ended: when it writes there for
/// the first time, and then once a minute, because it takes as long as the folder has files. Returns true once each
/// time. Threads may call it at the same time.
bool is_time_to_remove_remnants(const std::filesystem::path& folder);

/// Paths of existing drafts for handlers of signals, which may run at any time and on any thread: memory is never
/// freed. A path that is too long, or one too many, is left out.
class draft_list
{
  public:
    static void add(const std::filesystem::path& draft) noexcept;
    static void remove(const std::filesystem::path& draft) noexcept;
    /// Calls use(path) for each; async-signal-safe if `use` is.
    template <class F>
    static void for_each(F use) noexcept
    {
        for (const entry& e : entries_)
            if (e.is_used) use(e.path);
    }

  private:
    using letter = std::filesystem::path::value_type;
    struct entry
    {
        std::atomic<bool> is_used;
        letter path[4096];
    };
    static entry entries_[4];
};

}  // namespace zentrix::host
