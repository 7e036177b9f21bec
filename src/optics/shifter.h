#pragma once

#include "image/processor.h"

#include <complex>
#include <cstddef>

/// Re-centres a complex spectrum or wave by half its size for programs whose transforms keep the origin in the middle
/// and use the opposite sign in the exponent: each pixel becomes its conjugate times (-1)^(x+y). Exact: only sign bits
/// flip, so twice is the identity, and zeros and NaNs keep their payloads.
namespace qorv::optics {

/// The only accepted shift is half the size, in whole pixels: `shift_x` == width / 2 and `shift_y` == height / 2
/// (integer division), and both sizes must be divisible by 4 unless one of them is 1. Scripts know both refusals by one
/// text, which speaks of powers of two though 12 x 20 is fine. Throws  errors::size_power_of_2
void require_shift(std::ptrdiff_t width, std::ptrdiff_t height, double shift_x, double shift_y);

/// Any width and height from 1 on, odd ones too; both images are contiguous rows of `width` elements.
/// source       width x height
/// destination  the same shape; may be the source itself, must not overlap it otherwise
/// room         elements that the destination holds; nothing is written behind them
template <class T>
using shift_kernel = void(const std::complex<T>* source, std::complex<T>* destination, std::ptrdiff_t width,
                          std::ptrdiff_t height, std::ptrdiff_t room) noexcept;

template <class T>
void shift_half_plain(const std::complex<T>* source, std::complex<T>* destination, std::ptrdiff_t width,
                      std::ptrdiff_t height, std::ptrdiff_t room) noexcept;
extern template shift_kernel<float> shift_half_plain<float>;
extern template shift_kernel<double> shift_half_plain<double>;

/// Two pixels at a time, pairs of rows (or stretches of a line) shared among the threads. The same bits as the plain
/// one.
shift_kernel<float> shift_half_sse;

inline constexpr dm::variant<shift_kernel<float>> shifter_variants[] = {
    {"sse", dm::cpu::sse, shift_half_sse}, {"plain", dm::cpu::none, shift_half_plain<float>}};

/// The best variant that the script switch allows; parameters as above.
/// Throws  errors::parameters_invalid on null data
void shift_half(const std::complex<float>* source, std::complex<float>* destination, std::ptrdiff_t width,
                std::ptrdiff_t height, std::ptrdiff_t room);
/// Double precision has the plain kernel only.
void shift_half(const std::complex<double>* source, std::complex<double>* destination, std::ptrdiff_t width,
                std::ptrdiff_t height, std::ptrdiff_t room);

}  // namespace qorv::optics
