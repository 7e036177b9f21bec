#pragma once

#include <complex>
#include <cstddef>

/// Two-dimensional Fourier transforms of images in place, zero frequency in the middle.
namespace zentrix::host {

/// The spectrum of an image: F(u, v) = sum f(x, y) exp(-2 pi i (u x / width + v y / height)), not scaled.
/// pixels  width x height, rows contiguous; replaced by the spectrum. Frequency (0, 0) is at (width / 2, height / 2) in
///         integer division, positive frequencies are to the right and below. The origin of the image is pixel (0, 0).
/// width, height  at least 1; products of small primes are fastest
/// Throws  std::bad_alloc
void forward_fft(std::complex<float>* pixels, std::ptrdiff_t width, std::ptrdiff_t height);
void forward_fft(std::complex<double>* pixels, std::ptrdiff_t width, std::ptrdiff_t height);

/// The inverse of forward_fft, including the factor 1 / (width * height).
void backward_fft(std::complex<float>* spectrum, std::ptrdiff_t width, std::ptrdiff_t height);
void backward_fft(std::complex<double>* spectrum, std::ptrdiff_t width, std::ptrdiff_t height);

}  // namespace zentrix::host
