#include "host/fft/finite.h"

#include <bit>
#include <cstdint>

namespace zentrix::host {

bool all_finite(const std::complex<float>* pixels, std::ptrdiff_t count) noexcept
{
    constexpr std::uint32_t exponent = 0x7F800000;  // all bits set: infinite or not a number
    const auto* const parts = reinterpret_cast<const float*>(pixels);
    std::uint32_t found = 0;
    for (std::ptrdiff_t i = 0; i < 2 * count; ++i)
        found |= (std::bit_cast<std::uint32_t>(parts[i]) & exponent) == exponent ? 1 : 0;
    return found == 0;
}

}  // namespace zentrix::host
