#pragma once

#include "host/engine/engine.h"

#include <memory>
#include <string>

namespace zentrix::host {

/// The library's nine entry points.
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

/// A loaded library file. It is never unmapped: the parallel runtime's threads may still sit in it. Loading the same
/// file again gives the same module with its present state.
class module
{
  public:
    /// Throws  script_error naming the file and what the system said
    explicit module(const std::string& utf8_path);
    /// Address of an exported function; null when there is none.
    void* find(const char* name) const noexcept;
    /// All nine. Throws  script_error naming the first missing one
    library_entries entries() const;
    const std::string& path() const noexcept { return path_; }

  private:
    std::string path_;
    void* handle_ = nullptr;
};

/// Where the library file is looked for when a program is not told: the environment's ZENTRIX_LIBRARY, else
/// "Zentrix64.dll" or "Zentrix64.so" beside the running program, in ../lib/ of it, or in the folder above it.
/// Throws  script_error listing the places when it is in none of them
std::string find_library_file();

/// A running library: loaded, linked to an engine and started, in the host's order; the destructor closes in reverse.
/// A step that fails undoes those before it. Errors that the library reports while it starts do not stop it, as in any
/// host: engine.records().errors() has them.
class library
{
  public:
    /// Loads the file at `utf8_path`. Throws  script_error when the file cannot be loaded, lacks an entry point or has
    /// another version of the linking protocol
    library(engine& host, const std::string& utf8_path);
    /// The same with entry points that are there already (linked into the program). A null entry is a script_error.
    library(engine& host, const library_entries& entries);
    ~library();
    library(const library&) = delete;
    library& operator=(const library&) = delete;

    /// Request close, prepare, clean up, shut down, link(null); returns what PlugInRequestClose answered. Whatever the
    /// answer, the library is closed. Later calls do nothing and return 0.
    std::int32_t close();

    /// Calls a script function, see engine::call.
    script_value call(std::string_view name, std::span<const script_value> arguments);
    script_value call(std::string_view name, std::initializer_list<script_value> arguments);

  private:
    void start();

    engine& engine_;
    library_entries entries_;
    bool running_ = false;
};

}  // namespace zentrix::host
