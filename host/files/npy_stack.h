#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "host/files/binary_input.h"
#include "host/files/pending_file.h"
#include "host/objects/image.h"

/// Stacks in .npy files, plane by plane, in the memory of one plane.
namespace zentrix::host {

/// Reads an array of shape (depth, height, width) in row-major order.
class npy_stack_reader
{
  public:
    /// Opens the file if it is such an array of elements of this type; otherwise returns null, also for files that
    /// read_npy would refuse. Throws  file_error when the file is missing or cut short
    static std::unique_ptr<npy_stack_reader> open(const std::filesystem::path& file, std::uint32_t code);

    std::uint32_t width() const noexcept { return width_; }
    std::uint32_t height() const noexcept { return height_; }
    std::uint32_t depth() const noexcept { return depth_; }

    /// The next plane, as a new image named after the file. Throws  file_error; call it `depth` times at most
    image_ref next();

  private:
    npy_stack_reader(const std::filesystem::path& file, std::uint32_t code) : file_{file}, code_{code}, from_{file} {}

    std::filesystem::path file_;
    std::uint32_t code_;
    binary_input from_;
    std::endian order_ = std::endian::little;
    std::uint32_t width_ = 0, height_ = 0, depth_ = 0;
};

/// Writes such an array.
class npy_stack_writer
{
  public:
    /// Throws  file_error, as pending_file and write_npy
    npy_stack_writer(const std::filesystem::path& file, std::uint32_t code, std::uint32_t width, std::uint32_t height,
                     std::uint32_t depth);

    /// Appends a contiguous plane. Throws  file_error
    void append(const image& plane);
    /// Moves the file to its place, after the last plane. Throws  file_error
    void commit() { output_.commit(); }

  private:
    pending_file output_;
};

}  // namespace zentrix::host
