#pragma once

#include "contract/host_link.h"

#include <string>

namespace zentrix::host {

/// The nine entry points of the library.
struct library_entries
{
    host_entry_get_version get_version = nullptr;  ///< DMPlugIn_GetVersion
    host_entry_link link = nullptr;                ///< DMPlugIn_Link_2
    host_entry register_floating_windows = nullptr;
    host_entry startup = nullptr;
    host_entry run = nullptr;
    host_entry_request_close request_close = nullptr;
    host_entry prepare_close = nullptr;
    host_entry cleanup = nullptr;
    host_entry shutdown = nullptr;
};

/// A loaded library file. It is never unloaded, because threads of the parallel runtime may still run code in it.
/// Loading the same file again returns the same module in its present state.
class module
{
  public:
    /// Throws  script_error naming the file and the system's reason
    explicit module(const std::string& utf8_path);
    /// All nine entry points. Throws  script_error naming the first missing one
    library_entries entries() const;

  private:
    std::string path_;
    void* handle_ = nullptr;
};

}  // namespace zentrix::host
