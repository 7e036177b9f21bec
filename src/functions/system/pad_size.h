#pragma once

#include <cstdint>

namespace qorv::functions {

/// A size of at least n for fast Fourier transforms: a product of 2, 3, 5 and 7 with many factors of two. Each of the
/// candidates n to n + n/16 is rounded up to such a product. The product with the most factors of two is returned;
/// among equals, the one with the most factors of three; among equals, that of the largest candidate. The result may
/// exceed n + n/16 and, near 2^32, also 2^32. Takes microseconds for every n.
std::uint64_t pad_size(std::uint32_t n) noexcept;

}  // namespace qorv::functions
