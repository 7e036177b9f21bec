#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/image.h"

namespace qorv::functions {

/// Window functions; the first eight are the modes of FTWindow, by number.
enum class window : std::int32_t
{
    hann,
    hamming,
    blackman,
    tukey,   ///< the outer half of the width tapered
    kaiser,  ///< beta = 8.6
    flat_top,
    blackman_harris,
    nuttall,
    sine,
    vorbis,
};

/// The window of a script's number.
/// Throws  errors::invalid_mode outside 0..7
window ft_window_of(std::int32_t mode);

/// The window over `size` elements. The FTWindow modes are periodic: they peak at element size / 2, where a centred
/// transform has its origin, and element 0 is their minimum. Sine and Vorbis windows are sampled at half elements and
/// symmetric about (size - 1) / 2, so that w(n)^2 + w(n + size/2)^2 = 1. A size of 1 gives 1, so that a dimension that
/// the image does not have is not tapered.
/// Exactness  double, to the last bits of the system's cosine
/// Source     Harris, Proc. IEEE 66 (1978) 51-83 (Hann, Hamming, Blackman, Tukey, Kaiser, Blackman-Harris);
///            Nuttall, IEEE Trans. ASSP 29 (1981) 84-91 (four terms, lowest side lobes);
///            D'Antona, Ferrero, Digital Signal Processing for Measurement Systems, Springer (2006) 70 (flat top);
///            Princen, Bradley, IEEE Trans. ASSP 34 (1986) 1153-1161 (sine); Xiph.org, Vorbis I, 4.3.1 (Vorbis)
std::vector<double> window_curve(window shape, std::ptrdiff_t size);

/// The numbers of ((element - a) * window) * b + c.
template <class Number>
struct window_offsets
{
    Number a{0}, b{1}, c{0};
};

/// Writes ((source - a) * w) * b + c with w the product of the window's curves along x, y and z.
/// source       any strides; float, double or complex of these
/// offsets      real, or complex for a complex destination
/// destination  size of the source; its type, or the complex type of its precision; may be the source
/// Throws       errors::different_size; errors::out_of_place for any other overlap
/// Exactness    computed in double, rounded once. A NaN affects only its own pixel.
template <class From, class To, class Number>
void apply_window(const dm::image<const From>& source, window shape, const window_offsets<Number>& offsets,
                  const dm::image<To>& destination);

}  // namespace qorv::functions
