#pragma once

#include <cstdint>

namespace qorv::optics {

/// to(y, x) = from(x, y). Out of place only. functions/transpose has the same for volumes of any element type; it is
/// above this folder.
/// from  `height` rows of `width` elements, contiguous
/// to    `width` rows of `height` elements, contiguous
void transpose(const float* from, float* to, std::int32_t width, std::int32_t height) noexcept;

}  // namespace qorv::optics
