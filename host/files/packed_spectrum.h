#pragma once

#include "host/objects/image.h"

/// The spectrum of a real image is Hermitian, F(-k) = conj(F(k)), and DM files hold half of it.
namespace zentrix::host {

/// How the half is stored.
enum class packing
{
    /// Element code 5, for even sizes: width / 2 complex numbers in each row, for kx = 0, 1, ... and, from the top,
    /// ky = -height / 2, ... The first column holds two columns of the spectrum: in its lower half kx = 0, in its upper
    /// half kx = -width / 2, each for ky = 0, 1, ... The values for ky = 0 and -height / 2 are real; the latter is the
    /// imaginary part of the former.
    shared_column,
    /// Element codes 27 and 28: width / 2 + 1 complex numbers in each row, for kx = 0, 1, ...; from the top,
    /// ky = -(height / 2), ... They are conjugate to the transform with exp(-2 pi i k r).
    full_column
};

/// Bytes of a packed spectrum. `part` is 4 or 8, the bytes of a real part.
std::uint64_t packed_bytes(packing how, std::uint64_t width, std::uint64_t height, std::uint64_t part) noexcept;

/// Expands a packed spectrum to all frequencies, with frequency 0 at (width / 2, height / 2).
/// packed     real and imaginary parts, packed_bytes of them, of the result's precision
/// spectrum   contiguous complex image of two dimensions; overwritten. Its sizes must be even for shared_column
void expand_spectrum(packing how, const void* packed, image& spectrum);

}  // namespace zentrix::host
