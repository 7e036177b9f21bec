#pragma once

#include <filesystem>
#include <string_view>

#include "host/objects/image.h"

/// Grey images and stacks as TIFF 6.0 and BigTIFF files.
namespace zentrix::host {

/// Reads the pages of a file as an image or, if there are several, as a stack: integers of 8, 16 and 32 bits, real and
/// complex numbers of single and double precision, in strips or tiles, without compression or with LZW, Deflate or
/// PackBits. Pages marked as reduced copies are left out. A page for which ImageJ's description announces a stack has
/// the other images after its first. The scale is that of the description, or else of the resolution tags if they
/// give pixels of 20 um or less: larger ones are resolutions for printing.
/// Throws  file_error, also for colours and for pages that differ in size or type
image_ref read_tiff(const std::filesystem::path& file);

/// The reason why write_tiff refuses complex numbers.
extern const char no_complex_tiff[];

/// Writes real numbers and integers without compression, the images of a stack one after another; as BigTIFF from 4 GB
/// on. Scale, units and voltage are in the resolution tags and in a description as ImageJ writes it.
/// Throws  file_error, also for complex and other elements
void write_tiff(const std::filesystem::path& file, const image& pixels);

/// Whether a file that starts with these bytes is a TIFF file.
bool is_tiff(std::string_view start) noexcept;

}  // namespace zentrix::host
