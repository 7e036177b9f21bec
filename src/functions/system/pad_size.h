#pragma once

#include <cstdint>

namespace qorv::functions {

/// A size of at least n for fast Fourier transforms: a product of 2, 3, 5 and 7 with many factors of two. Each of the
/// candidates n to n + n/16 is rounded up to such a product. The one with the most factors of two is chosen, among these
/// the one with the most factors of three, among these the largest candidate. The result may exceed n + n/16 and, near
/// 2^32, also 2^32. Takes microseconds for every n.
std::uint64_t pad_size(std::uint32_t n) noexcept;

}  // namespace qorv::functions
