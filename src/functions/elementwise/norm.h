#pragma once

#include <complex>
#include <cstddef>

/// Squared moduli of complex images, float and double, as `count` elements in one flat sequence. One loop for all
/// processors, which the compiler vectorises.
namespace qorv::functions {

/// dst = (re^2 + im^2) * scale, in the precision of the image, to which the scale is rounded first.
/// Source and result must not overlap.
template <class T>
void norm(const std::complex<T>* src, double scale, T* dst, std::ptrdiff_t count);

/// The same as the real part of a complex image with imaginary part 0; dst may be src.
template <class T>
void norm(const std::complex<T>* src, double scale, std::complex<T>* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
