#include "optics/wave_transfer_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "image/overlap.h"
#include "optics/wave_transfer.h"

namespace qorv::optics {
namespace {

complex_float narrow(std::complex<double> number)
{
    return {static_cast<float>(number.real()), static_cast<float>(number.imag())};
}

}  // namespace

binding::image_ref WTFMulDM(binding::image_ref source, float lambda, float step, float c20, std::complex<double> c22,
                            float c40, float c60, std::complex<double> c31, std::complex<double> c33,
                            std::complex<double> c42, std::complex<double> c44, std::complex<double> c51,
                            std::complex<double> c53, std::complex<double> c55, std::complex<double> c62,
                            std::complex<double> c64, std::complex<double> c66, float c2s, float bdiv, float vib,
                            std::int32_t with_envelope, std::complex<double> tilt, binding::image_ref destination)
{
    const dm::timing_scope timing{"WTFMulDM"};
    dm::require_image(source);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require(binding::IsComplexDataType(source, 8) && binding::IsComplexDataType(destination, 8),
                dm::errors::all_complex8);
    const aberrations lens{c20,         narrow(c22), c40,         c60,         narrow(c31), narrow(c33), narrow(c42),
                           narrow(c44), narrow(c51), narrow(c53), narrow(c55), narrow(c62), narrow(c64), narrow(c66)};
    const auto damping = with_envelope != 0 ? std::optional{envelope{c2s, bdiv, vib}} : std::nullopt;
    dm::with_locks(dm::reading{source}, dm::writing{destination},
                   [&](const dm::read_lock& from, const dm::write_lock& to) {
                       dm::require_same_size(from, to);
                       const auto src = from.view<complex_float>();
                       const auto dst = to.view<complex_float>();
                       dm::require_in_place_or_apart(src, dst);
                       const sampling at{static_cast<int>(from.width()), static_cast<int>(from.height()), lambda, step,
                                         narrow(tilt)};
                       apply_wave_transfer(dm::flat_plane(src), dm::flat_plane(dst), at, lens, damping);
                   });
    return destination;
}

}  // namespace qorv::optics
