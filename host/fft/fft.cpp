#include "host/fft/fft.h"

#include <algorithm>
#include <atomic>
#include <iterator>

#include "host/fft/finite.h"
#include "host/fft/strip.h"
#include "host/parallel/for_each_row.h"

namespace zentrix::host {

namespace {

/// Columns that are transformed together.
std::ptrdiff_t strip_width_for(std::ptrdiff_t width, std::ptrdiff_t height)
{
    // Long columns do not fit in the cache. Narrow strips keep the memory small.
    constexpr std::ptrdiff_t long_column = 1 << 16;
    return std::min(width, height < long_column ? full_strip_width : full_strip_width / 4);
}

/// How far a line is rolled when it is copied to and from the transform.
struct centring
{
    std::ptrdiff_t load = 0;   ///< index of the transform's input that the first pixel has
    std::ptrdiff_t store = 0;  ///< index of the transform's output that becomes the first pixel
};

/// The zero frequency, index 0 for FFTW, is at length / 2 in the image.
centring centring_of(std::ptrdiff_t length, fft_direction direction)
{
    const std::ptrdiff_t first = length - length / 2;
    if (first == length) return {};  // length 1
    return direction == fft_direction::forward ? centring{0, first} : centring{first, 0};
}

/// Returns whether the row was finite.
bool transform_row(std::complex<float>* row, const line_transform& transform, centring at, const line_memory& scratch)
{
    const std::ptrdiff_t length = transform.length();
    std::complex<float>*const from = scratch.line(0), *const to = scratch.line(1);
    std::rotate_copy(row, row + (length - at.load) % length, row + length, from);
    const bool is_finite = all_finite(from, length);
    transform(from, to);
    std::rotate_copy(to, to + at.store, to + length, row);
    return is_finite;
}

/// Columns are transformed from line i + 1 of the scratch memory to line i, so that it needs one more line than there
/// are columns. Returns whether the transformed columns are finite.
bool transform_strip(std::complex<float>* strip, std::ptrdiff_t stride, std::ptrdiff_t columns,
                     const line_transform& transform, centring at, const line_memory& scratch, float scale)
{
    const std::ptrdiff_t height = transform.length();
    load_strip(strip, stride, columns, height, scratch.line(1), scratch.stride(), at.load);
    bool is_finite = true;
    for (std::ptrdiff_t i = 0; i < columns; ++i) {
        transform(scratch.line(i + 1), scratch.line(i));
        is_finite = all_finite(scratch.line(i), height) && is_finite;
    }
    store_strip(strip, stride, columns, height, scratch.line(0), scratch.stride(), at.store, scale);
    return is_finite;
}

}  // namespace

fft_plan::fft_plan(std::ptrdiff_t width, std::ptrdiff_t height)
    : width_{width}, height_{height}, strip_width_{strip_width_for(width, height)}
{
    // A thread without a row or strip gets no memory, because that of an image of one row or column is a whole image.
    const auto threads = threads_for(width * height);
    const auto row_threads = threads_for_rows(height, threads), strip_threads = std::min(strip_count(), threads);
    for (std::ptrdiff_t i = 0; i < row_threads; ++i) row_scratch_.emplace_back(2, width);
    for (std::ptrdiff_t i = 0; i < strip_threads; ++i) strip_scratch_.emplace_back(strip_width_ + 1, height);
}

bool fft_plan::forward(pixel* pixels) { return transform(pixels, fft_direction::forward); }
bool fft_plan::backward(pixel* spectrum) { return transform(spectrum, fft_direction::backward); }

bool fft_plan::transform(pixel* pixels, fft_direction direction)
{
    const auto row = line_transform::of(width_, direction), column = line_transform::of(height_, direction);
    const auto row_threads = std::ssize(row_scratch_), strip_threads = std::ssize(strip_scratch_);
    require_memory_for_lines(std::max(width_, height_), std::max(row_threads, strip_threads));
    const auto at_row = centring_of(width_, direction), at_column = centring_of(height_, direction);
    const float scale =
        direction == fft_direction::forward ? 1.0F : 1.0F / (static_cast<float>(width_) * static_cast<float>(height_));

    std::atomic<bool> rows_are_finite = true, columns_are_finite = true;
    for_each_row(height_, row_threads, [&](std::size_t thread, std::size_t y) {
        if (is_given_up()) return;
        if (!transform_row(pixels + static_cast<std::ptrdiff_t>(y) * width_, *row, at_row, row_scratch_[thread]))
            rows_are_finite = false;
    });
    in_parallel(strip_count(), strip_threads, [&](std::ptrdiff_t thread, std::ptrdiff_t item) {
        if (is_given_up()) return;
        const auto left = item * strip_width_;
        if (!transform_strip(pixels + left, width_, std::min(strip_width_, width_ - left), *column, at_column,
                             strip_scratch_[static_cast<std::size_t>(thread)], scale))
            columns_are_finite = false;
    });
    return direction == fft_direction::forward ? rows_are_finite : columns_are_finite;
}

void forward_fft(std::complex<float>* pixels, std::ptrdiff_t width, std::ptrdiff_t height)
{
    fft_plan{width, height}.forward(pixels);
}

void backward_fft(std::complex<float>* spectrum, std::ptrdiff_t width, std::ptrdiff_t height)
{
    fft_plan{width, height}.backward(spectrum);
}

}  // namespace zentrix::host
