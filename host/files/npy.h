#pragma once

#include <filesystem>
#include <string>

#include "host/objects/image.h"

/// Images as NumPy arrays on disk. Arrays of shape (height, width) are images, those of shape (depth, height, width)
/// volumes, those of shape (width,) lines.
namespace zentrix::host {

/// Reads a .npy file of format version 1, 2 or 3 with one to three dimensions of int8, uint8, int16, uint16, int32,
/// uint32, float32, float64, complex64 or complex128. Big-endian values and column-major (Fortran) order are converted.
/// Bytes after the last element are ignored. The image is named after the file.
/// Throws  file_error naming what was found and what was expected
image_ref read_npy(const std::filesystem::path& file);

/// Writes an image as .npy of version 1, little-endian, row-major, with as many dimensions as the image has.
/// Throws  file_error; an existing file of that name then stays as it was
void write_npy(const std::filesystem::path& file, const image& pixels);

/// NumPy's name of an element type ("complex64"); the host's name when NumPy has none.
std::string dtype_name(const element& type);

}  // namespace zentrix::host
