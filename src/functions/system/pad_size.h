#pragma once

#include <cstdint>

namespace qorv::functions {

/// A size of at least n that fast Fourier transforms like: a product of 2, 3, 5 and 7 with many factors of two. Of the
/// candidates n to n + n/16, each rounded up to such a product, the one with the most twos wins, then the most threes,
/// then the largest. The result may lie beyond n + n/16. Exact for every 32-bit n; there are n/16 candidates to look
/// at, so that sizes near 2^32 take some twenty seconds where an image's size takes microseconds.
std::uint64_t pad_size(std::uint32_t n) noexcept;

}  // namespace qorv::functions
