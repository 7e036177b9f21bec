#pragma once

#include <complex>
#include <cstddef>

namespace zentrix::host {

enum class fft_direction
{
    forward,
    backward
};

/// What is beneath forward_fft and backward_fft: in place, frequency zero of the spectrum in the middle, without a factor
/// either way. One of transform_fftw.cpp and transform_eigen.cpp is built.
template <class T>
void transform(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, fft_direction direction);

extern template void transform(std::complex<float>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);
extern template void transform(std::complex<double>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);

}  // namespace zentrix::host
