#pragma once

#include <memory>
#include <string>

#include "host/files/npy_stack.h"
#include "host/objects/image.h"

/// Waves and stacks of waves, one plane at a time, so that the memory does not grow with the number of planes.
namespace zentrix::program {

/// An image of complex64 of this size that has a scale but no pixels of its own: all are at one place.
host::image_ref new_outline(const std::string& name, std::uint32_t width, std::uint32_t height, std::uint32_t depth,
                            const host::calibration& scale);

/// Reads the planes of a file. Stacks of complex64 in .npy files are read plane by plane, other files at once.
class wave_reader
{
  public:
    /// Throws  as read_waves
    explicit wave_reader(const std::string& name);

    /// Size and scale; its pixels must not be used.
    const host::image& outline() const { return *outline_; }
    bool is_stack() const { return outline_->size(2) > 1; }
    /// The next plane, of two dimensions, complex64, contiguous; the caller may change it. Throws  host::file_error
    host::image_ref next();

  private:
    std::unique_ptr<host::npy_stack_reader> stream_;
    host::image_ref whole_, outline_;
    std::uint32_t plane_ = 0;
};

/// Writes a stack of complex64: to a .npy file plane by plane, to other formats at the end.
class stack_writer
{
  public:
    /// outline  size and scale of the stack. Throws  host::file_error
    stack_writer(const std::string& file, const host::image& outline);

    /// Throws  host::file_error
    void append(const host::image& plane);
    void commit();

  private:
    std::string file_;
    std::unique_ptr<host::npy_stack_writer> stream_;
    host::image_ref whole_;
    std::uint32_t plane_ = 0;
};

}  // namespace zentrix::program
