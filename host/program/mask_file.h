#pragma once

#include <string>

#include "host/objects/image.h"
#include "host/parameters/record.h"

namespace zentrix::program {

/// A mask, as read from a file: pixels that are not 0 are left out. Its elements are integers, real numbers or truth
/// values.
class mask_file
{
  public:
    /// Throws  host::file_error, also when nothing is left to work on
    explicit mask_file(const std::string& name);

    const host::recorded_input& input() const { return input_; }

    /// The mask for an image, whose size or that of one of its planes it must have; that of a plane counts for all.
    /// Returns  an image of uint8, contiguous, of the size of `pixels`: 1 where a pixel is left out, otherwise 0
    /// Throws   host::file_error
    host::image_ref mask_for(const host::image& pixels) const;

  private:
    host::recorded_input input_;
    host::image_ref read_;
};

/// Writes not-a-number to all pixels of a phase (contiguous, float32) that the mask leaves out.
/// Returns  their number
std::size_t leave_out(host::image& phase, const host::image& mask);

/// Gives the pixels that the mask leaves out the values that they have in `from`. All three are contiguous and of the
/// same size, both phases float32.
void restore_left_out(host::image& phase, const host::image& from, const host::image& mask);

}  // namespace zentrix::program
