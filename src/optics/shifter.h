#pragma once

#include "image/processor.h"

#include <complex>
#include <cstddef>

/// Re-centres a complex spectrum or wave by half its size for programs whose transforms have the origin in the middle
/// and the opposite sign in the exponent: each pixel becomes its conjugate times (-1)^(x+y). Only sign bits change, so
/// two applications are the identity, and zeros and NaNs keep the rest of their bits.
namespace qorv::optics {

/// Accepts half the size as the shift, in whole pixels: shift_x == width / 2 and shift_y == height / 2 (integer
/// division). Both sizes must be divisible by 4 unless one of them is 1.
/// Throws  errors::size_power_of_2 for a wrong size and for a wrong shift; 12 x 20 is accepted in spite of the text
void require_shift(std::ptrdiff_t width, std::ptrdiff_t height, double shift_x, double shift_y);

/// source       width x height, rows contiguous; any sizes from 1 on, odd ones included
/// destination  same shape; may equal source, must not overlap it otherwise
/// room         number of elements in the destination; nothing is written past them
/// Exactness    all variants give the same bits
template <class T>
using shift_kernel = void(const std::complex<T>* source, std::complex<T>* destination, std::ptrdiff_t width,
                          std::ptrdiff_t height, std::ptrdiff_t room) noexcept;

template <class T>
void shift_half_plain(const std::complex<T>* source, std::complex<T>* destination, std::ptrdiff_t width,
                      std::ptrdiff_t height, std::ptrdiff_t room) noexcept;
extern template shift_kernel<float> shift_half_plain<float>;
extern template shift_kernel<double> shift_half_plain<double>;

/// Two pixels at a time; pairs of rows, or sections of a line, are shared among the threads.
shift_kernel<float> shift_half_sse2;

dm::variants<shift_kernel<float>> shifter_variants();

/// The best variant that the script switch allows; parameters as above.
/// Throws  errors::parameters_invalid on null data
void shift_half(const std::complex<float>* source, std::complex<float>* destination, std::ptrdiff_t width,
                std::ptrdiff_t height, std::ptrdiff_t room);
/// The plain kernel: double precision has no other.
void shift_half(const std::complex<double>* source, std::complex<double>* destination, std::ptrdiff_t width,
                std::ptrdiff_t height, std::ptrdiff_t room);

}  // namespace qorv::optics
