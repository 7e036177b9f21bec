#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/engine/engine.h"
#include "host/engine/library.h"

namespace zentrix::program {

/// Options that hold for every command.
struct global_options
{
    std::string library;  ///< library file; empty: next to the program, see host/engine/library_search.h
    bool use_simd = true;
    bool json = false;
    std::vector<std::string> words;  ///< the command line without the program's name, UTF-8
    bool is_worker = false;          ///< this process was started by another one of this program, see host/batch/
};

/// The command line cannot be understood; the program ends with code 2.
class usage_error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/// The stand-alone host with the library running in it, for the length of a command. The library's output, dialogs and
/// errors go to standard error.
class session
{
  public:
    /// Throws  host::script_error when the library is not found or does not start
    explicit session(const global_options& options);
    /// Closes the library and reports on standard error what it still holds.
    ~session();
    session(const session&) = delete;
    session& operator=(const session&) = delete;

    host::engine& engine() { return engine_; }

  private:
    session(const std::string& library_file, bool use_simd);

    host::engine engine_;
    std::unique_ptr<host::library> library_;
};

}  // namespace zentrix::program
