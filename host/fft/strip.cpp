#include "host/fft/strip.h"

#include <emmintrin.h>

namespace zentrix::host {

namespace {

using pixel = std::complex<float>;

/// Pixel (x, y) is at first[y * row + x * column].
template <class Pixel>
struct layout
{
    Pixel* first;
    std::ptrdiff_t row, column;

    Pixel* at(std::ptrdiff_t x, std::ptrdiff_t y) const { return first + y * row + x * column; }
};

/// Copies 2 x 2 pixels between a layout whose rows are contiguous and one whose columns are.
inline void copy_block(const pixel* from, std::ptrdiff_t from_stride, pixel* to, std::ptrdiff_t to_stride, float scale)
{
    const __m128 factor = _mm_set1_ps(scale);
    const __m128 a = _mm_loadu_ps(reinterpret_cast<const float*>(from)) * factor,
                 b = _mm_loadu_ps(reinterpret_cast<const float*>(from + from_stride)) * factor;
    _mm_storeu_ps(reinterpret_cast<float*>(to), _mm_movelh_ps(a, b));
    _mm_storeu_ps(reinterpret_cast<float*>(to + to_stride), _mm_movehl_ps(b, a));
}

/// One of `from` and `to` has contiguous rows (the image), the other contiguous columns (the lines). `columns` is a
/// constant where this is inlined for whole strips.
inline __attribute__((always_inline)) void copy(layout<const pixel> from, layout<pixel> to, std::ptrdiff_t columns,
                                                std::ptrdiff_t rows, float scale)
{
    const auto from_stride = from.column == 1 ? from.row : from.column;
    const auto to_stride = to.column == 1 ? to.row : to.column;
    const auto copy_pixel = [&](std::ptrdiff_t x, std::ptrdiff_t y) { *to.at(x, y) = *from.at(x, y) * scale; };
    std::ptrdiff_t y = 0;
    for (; y + 2 <= rows; y += 2) {
        std::ptrdiff_t x = 0;
        for (; x + 2 <= columns; x += 2) copy_block(from.at(x, y), from_stride, to.at(x, y), to_stride, scale);
        if (x < columns) copy_pixel(x, y), copy_pixel(x, y + 1);
    }
    if (y < rows)
        for (std::ptrdiff_t x = 0; x < columns; ++x) copy_pixel(x, y);
}

void copy_strip(layout<const pixel> from, layout<pixel> to, std::ptrdiff_t columns, std::ptrdiff_t rows, float scale)
{
    if (columns == full_strip_width)
        copy(from, to, full_strip_width, rows, scale);
    else
        copy(from, to, columns, rows, scale);
}

}  // namespace

void load_strip(const pixel* image, std::ptrdiff_t image_stride, std::ptrdiff_t columns, std::ptrdiff_t height,
                pixel* lines, std::ptrdiff_t line_stride, std::ptrdiff_t start)
{
    const auto part = [&](std::ptrdiff_t image_y, std::ptrdiff_t line_y, std::ptrdiff_t rows) {
        copy_strip({image + image_y * image_stride, image_stride, 1}, {lines + line_y, 1, line_stride}, columns, rows,
                   1);
    };
    part(0, start, height - start);
    if (start > 0) part(height - start, 0, start);
}

void store_strip(pixel* image, std::ptrdiff_t image_stride, std::ptrdiff_t columns, std::ptrdiff_t height,
                 const pixel* lines, std::ptrdiff_t line_stride, std::ptrdiff_t start, float scale)
{
    const auto part = [&](std::ptrdiff_t image_y, std::ptrdiff_t line_y, std::ptrdiff_t rows) {
        copy_strip({lines + line_y, 1, line_stride}, {image + image_y * image_stride, image_stride, 1}, columns, rows,
                   scale);
    };
    part(0, start, height - start);
    if (start > 0) part(height - start, 0, start);
}

}  // namespace zentrix::host
