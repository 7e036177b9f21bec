#pragma once

#include <atomic>
#include <complex>
#include <cstddef>
#include <vector>

#include "host/fft/line_transform.h"

/// Two-dimensional Fourier transforms of images in place, zero frequency in the middle. The same input gives the same
/// bits in each run, with any number of processors, and on Linux and Windows, as long as the processors have the same
/// instruction sets: FFTW chooses its kernels by them.
namespace zentrix::host {

/// Transforms of images of one size, with what they have in common: plans, and memory for a few rows or columns per
/// processor, less than half of what a large image takes. An object is used by one thread at a time; it starts one more
/// for each other processor.
class fft_plan
{
  public:
    using pixel = std::complex<float>;

    /// width, height  at least 1; products of small primes are fastest
    /// Throws  std::bad_alloc
    fft_plan(std::ptrdiff_t width, std::ptrdiff_t height);
    fft_plan(const fft_plan&) = delete;
    fft_plan& operator=(const fft_plan&) = delete;

    /// The spectrum of an image: F(u, v) = sum f(x, y) exp(-2 pi i (u x / width + v y / height)), not scaled.
    /// pixels  width x height, rows contiguous; replaced by the spectrum. Frequency (0, 0) is at (width / 2,
    ///         height / 2) in integer division, positive frequencies are to the right and below. The origin of the
    ///         image is pixel (0, 0).
    /// Returns whether all pixels of the image were finite. A single one that is not spreads over the whole spectrum.
    /// Throws  std::bad_alloc; the pixels are then as they were
    bool forward(pixel* pixels);

    /// The inverse of `forward`, including the factor 1 / (width * height).
    /// Returns whether all pixels of the resulting image are finite
    /// Throws  as `forward`
    bool backward(pixel* spectrum);

    /// Makes the transforms return soon when the flag becomes true; the pixels are then undefined. Null: never.
    void give_up_on(const std::atomic<bool>* flag) noexcept { given_up_ = flag; }

    std::ptrdiff_t width() const noexcept { return width_; }
    std::ptrdiff_t height() const noexcept { return height_; }

  private:
    bool transform(pixel* pixels, fft_direction direction);
    bool is_given_up() const noexcept { return given_up_ && *given_up_; }

    std::ptrdiff_t strip_count() const noexcept { return (width_ + strip_width_ - 1) / strip_width_; }

    std::ptrdiff_t width_, height_, strip_width_;
    std::vector<line_memory> row_scratch_, strip_scratch_;  ///< for each thread
    const std::atomic<bool>* given_up_ = nullptr;
};

/// Single transforms; see fft_plan.
void forward_fft(std::complex<float>* pixels, std::ptrdiff_t width, std::ptrdiff_t height);
void backward_fft(std::complex<float>* spectrum, std::ptrdiff_t width, std::ptrdiff_t height);

}  // namespace zentrix::host
