#pragma once

#include <complex>
#include <cstddef>

/// Copies between a strip of neighbouring columns of an image and lines of contiguous pixels.
namespace zentrix::host {

/// The width for which the copies are fastest, two cache lines. Single columns would use one pixel of each cache line
/// that is fetched.
inline constexpr std::ptrdiff_t full_strip_width = 16;

/// Copies each column to a line, rolled: row y goes to index (y + start) mod height.
/// image            first pixel of the strip; `image_stride` pixels to the next row
/// columns, height  size of the strip
/// lines            one for each column, `line_stride` pixels apart
/// start            0 <= start < height
void load_strip(const std::complex<float>* image, std::ptrdiff_t image_stride, std::ptrdiff_t columns,
                std::ptrdiff_t height, std::complex<float>* lines, std::ptrdiff_t line_stride, std::ptrdiff_t start);

/// The reverse of load_strip: index (y + start) mod height goes to row y, multiplied by `scale`.
void store_strip(std::complex<float>* image, std::ptrdiff_t image_stride, std::ptrdiff_t columns, std::ptrdiff_t height,
                 const std::complex<float>* lines, std::ptrdiff_t line_stride, std::ptrdiff_t start, float scale);

}  // namespace zentrix::host
