#pragma once

#include <cstdint>

namespace qorv::optics {

/// to(y, x) = from(x, y) for `height` rows of `width` floats, both contiguous, not overlapping; `to` gets `width` rows
/// of `height`.
void transpose(const float* from, float* to, std::int32_t width, std::int32_t height) noexcept;

}  // namespace qorv::optics
