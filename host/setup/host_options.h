#pragma once

#include <string>

#include "host/engine/engine.h"

namespace zentrix::host {

/// The options with which every program of this project makes its engine: files exist where the file system has them,
/// and OpenImage reads image files.
/// library_file  the library that will be loaded, UTF-8
/// listening     receives messages, output and errors
engine_options host_options(const std::string& library_file, listeners listening);

}  // namespace zentrix::host
