#pragma once

#include <complex>
#include <cstddef>

namespace zentrix::host {

/// Whether no real or imaginary part is infinite or not a number. Takes less time than reading the pixels from memory.
bool all_finite(const std::complex<float>* pixels, std::ptrdiff_t count) noexcept;

}  // namespace zentrix::host
