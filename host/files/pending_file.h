#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>

namespace zentrix::host {

/// A file in the making: written beside its place under another name and moved there by `commit`. Without a commit
/// nothing is left behind and a former file of that name stays as it was.
class pending_file
{
  public:
    /// Opens the file in the making for `target`. A symbolic link is followed.
    /// Throws  file_error when the folder does not exist or cannot be written, or something other than a file is there
    explicit pending_file(const std::filesystem::path& target);
    ~pending_file();
    pending_file(const pending_file&) = delete;
    pending_file& operator=(const pending_file&) = delete;

    /// Throws  file_error when the disk takes no more
    void write(const void* bytes, std::size_t count);

    /// Puts the file into its place, over a former one. Call once, last.
    void commit();

  private:
    std::filesystem::path target_;
    std::filesystem::path draft_;
    std::ofstream stream_;
};

}  // namespace zentrix::host
