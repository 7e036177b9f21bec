#pragma once

#include "host/engine/engine.h"
#include "host/engine/module.h"

#include <string>

namespace zentrix::host {

/// A running library: loaded, linked to an engine and started in the host's order. Closing runs the steps in reverse.
/// Errors that the library reports while it starts do not stop it; engine.records().errors() lists them.
///
///     engine host;
///     library zentrix{host, "Zentrix64.so"};
///     auto result = host.call("ZXMedianFilter", {wave, std::int64_t{2}, script_value{}, std::int64_t{1}});
class library
{
  public:
    /// Loads a file. Throws  script_error when it cannot be loaded, lacks an entry point or has another version of the
    /// linking protocol
    library(engine& host, const std::string& utf8_path);
    /// Starts a library that is linked into the program. Throws  script_error as above; also when an entry is null
    library(engine& host, const library_entries& entries);
    /// Closes the library.
    ~library();
    library(const library&) = delete;
    library& operator=(const library&) = delete;

    /// Requests the close, prepares it, cleans up, shuts down and unlinks. Returns the answer of PlugInRequestClose;
    /// the library is closed whatever it is. Further calls do nothing and return 0.
    std::int32_t close();

  private:
    void start();

    engine& engine_;
    library_entries entries_;
    bool running_ = false;
};

}  // namespace zentrix::host
