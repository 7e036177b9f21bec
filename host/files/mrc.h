#pragma once

#include <filesystem>
#include <string_view>

#include "host/objects/image.h"

/// Images, stacks and volumes as MRC 2014 files (Cheng et al., J. Struct. Biol. 192 (2015) 146-150). The rows of a file
/// are the rows of the image in the same order; programs that have y upwards show row 0 at the bottom.
namespace zentrix::host {

/// Reads a file of mode 0 (int8), 1 (int16), 2 (float32), 4 (complex64) or 6 (uint16), of either byte order, also an
/// older one without "MAP ". The extended header is skipped. The pixel size is the cell divided by its sampling,
/// converted from A to nm. The first pixel is at the origin of words 50 to 52 or, where that is 0, at the start of
/// words 5 to 7.
/// Throws  file_error
image_ref read_mrc(const std::filesystem::path& file);

/// Writes an image as MRC: int8, int16, uint16, float32 and complex64 as they are; uint8 as uint16; float64 as float32
/// and complex128 as complex64, rounded; int32 and uint32 as float32. A scale in units of length is written in A, other
/// scales and the voltage are not. Three dimensions are a volume if z has a unit of length, otherwise a stack.
/// Throws  file_error, also for integers that float32 does not have, values beyond its range and other elements
void write_mrc(const std::filesystem::path& file, const image& pixels);

/// Whether a file that starts with these bytes, at least 1024, has the mark of an MRC file.
bool is_mrc(std::string_view start) noexcept;

}  // namespace zentrix::host
