#pragma once

#include <string>

#include "host/objects/image.h"

namespace zentrix::program {

/// The wave in a file as complex numbers of two floats, which is what the transfer function takes.
/// Throws  host::file_error, also when it holds no complex wave of two dimensions
host::image_ref read_wave(const std::string& name);

}  // namespace zentrix::program
