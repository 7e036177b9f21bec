#pragma once

#include <string>

#include "host/objects/image.h"

namespace zentrix::program {

/// Reads a wave as complex numbers of two floats, as the transfer function needs it.
/// Throws  host::file_error, also when the file holds no complex wave of two dimensions
host::image_ref read_wave(const std::string& name);

}  // namespace zentrix::program
