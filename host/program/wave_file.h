#pragma once

#include <string>

#include "host/objects/image.h"

namespace zentrix::program {

/// Reads a wave as complex numbers of two floats, as the transfer function needs it: two dimensions.
/// Throws  host::file_error, also when the file holds no complex wave, or more than one
host::image_ref read_wave(const std::string& name);

/// Reads a wave, or a stack of waves: three dimensions.
/// Its scale is that of the file or else of the file's record, see host::recorded_scale.
/// Throws  as read_wave
host::image_ref read_waves(const std::string& name);

/// A single plane as an image of two or three dimensions; the same pixels and scale.
/// plane  contiguous
host::image_ref with_dimensions(const host::image_ref& plane, std::size_t dimensions);

/// For pixels that are infinite or not a number.
enum class nan_rule
{
    refuse,
    zero,
    mean
};

/// Applies the rule to a wave that read_wave read from `name`, and says on standard error what was replaced.
/// Throws  host::file_error with the number of such pixels when the rule is to refuse them
void apply_nan_rule(const std::string& name, host::image& wave, nan_rule rule);

}  // namespace zentrix::program
