#include "optics/wave_transfer_row.h"
#include "optics/wave_transfer_terms.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace qorv::optics {
namespace {

/// Parts of the angle and of the vibration term that depend on one coordinate only.
struct axis
{
    std::vector<float> angle;
    std::vector<float> vibration;

    axis(int size, const sampling& at, float tilt, float vib)
    {
        const auto count = static_cast<std::size_t>(std::max(size, 0));
        angle.reserve(count);
        vibration.reserve(count);
        for (int i = 0; i < size; ++i) {
            angle.push_back(angle_along(i, size, at, tilt));
            vibration.push_back(vibration_along(i, size, at, vib));
        }
    }
};

}  // namespace

template <class Arch>
void apply_wave_transfer_blocked(const complex_float* src, complex_float* dst, const sampling& at,
                                 const aberrations& lens, const std::optional<envelope>& damping)
{
    const envelope width = damping.value_or(envelope{});
    const axis along_x{at.nx, at, at.tilt.real(), width.vib};
    const axis along_y{at.ny, at, at.tilt.imag(), width.vib};
    transfer_row row{along_x.angle.data(),      along_x.vibration.data(), 0, 0, damping ? &width : nullptr, lens,
                     values_at_centre(at, lens)};
    for (int y = 0; y < at.ny && at.nx > 0; ++y) {
        row.angle_y = along_y.angle[static_cast<std::size_t>(y)];
        row.vibration_y = along_y.vibration[static_cast<std::size_t>(y)];
        const std::ptrdiff_t first = std::ptrdiff_t{y} * at.nx;
        transfer_row_simd<Arch>(src + first, dst + first, at.nx, row);
    }
}

template wave_transfer_kernel apply_wave_transfer_blocked<xsimd::sse2>;
template wave_transfer_kernel apply_wave_transfer_blocked<xsimd::avx2>;

}  // namespace qorv::optics
