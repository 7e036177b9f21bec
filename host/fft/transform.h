#pragma once

#include <complex>
#include <cstddef>

namespace zentrix::host {

enum class fft_direction
{
    forward,
    backward
};

/// The transform of forward_fft and backward_fft: in place, zero frequency of the spectrum in the middle, not scaled in
/// either direction. Implemented in transform_fftw.cpp (Linux) and transform_eigen.cpp (Windows).
/// Throws  std::bad_alloc
template <class T>
void transform(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, fft_direction direction);

extern template void transform(std::complex<float>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);
extern template void transform(std::complex<double>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);

}  // namespace zentrix::host
