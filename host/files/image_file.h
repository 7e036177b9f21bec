#pragma once

#include <filesystem>
#include <string>

#include "host/objects/image.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

/// Reads an image file: DM3, DM4, MRC, .npy, TIFF. The first bytes decide which format it is; where they do not, the
/// extension does. The image has the scale and voltage that the file has (image::scale).
/// Throws  file_error, also for a format that is not read
image_ref read_image(const std::filesystem::path& file);

/// The name of the format that read_image takes the file for, such as "DM3". Throws  as read_image
std::string format_of(const std::filesystem::path& file);

/// Whether the file's name has the extension of a format that read_image reads. Pictures are none.
bool has_readable_extension(const std::filesystem::path& file);

/// Writes an image by the file's extension: .npy keeps every value; .mrc and .tif keep those that the format has, and
/// the scale (write_mrc, write_tiff); .png is a picture of it in that mode.
/// Throws  file_error, also for another extension
void write_image(const std::filesystem::path& file, const image& pixels, display_mode shown = display_mode::real,
                 palette shades = palette::grey);

/// What a file of this name keeps of an image's scale: .tif all, .mrc no voltage, .npy nothing. Pictures are not read
/// again: for them, nothing counts as lost.
calibration scale_kept_by(const std::filesystem::path& file, const calibration& scale);

/// Checks the file's extension before any work is done. Throws  as write_image, also for a format that does not have
///         elements of that class
void require_writable_kind(const std::filesystem::path& file, element_class meaning = element_class::real);

}  // namespace zentrix::host
