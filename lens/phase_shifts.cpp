#include "lens/phase_shifts.h"

#include <complex>

#include "lens/aberration_basis.h"
#include "lens/contrast_profile.h"

namespace zentrix::lens {

namespace {

constexpr std::size_t profile_elements = 1024;

/// 0: not up to the Nyquist frequency.
double information_limit(const optics& setup, double nyquist)
{
    optics round = setup;  // the envelope depends on no other coefficients
    round.tilt_mrad = 0;
    for (const auto& about : all_coefficients)
        if (about.symmetry != 0) round.lens[about.which] = {};
    const auto arguments = arguments_for(round, 2, 2, direction::apply, damping::on);
    const double distance = nyquist / profile_elements;
    return profile_of(arguments, nyquist, profile_elements, distance).information_limit;
}

}  // namespace

phase_shifts phase_shifts_of(const optics& setup)
{
    phase_shifts shifts;
    const double nyquist = 0.5 / setup.pixel_nm;
    const double limit = information_limit(setup, nyquist);
    shifts.at_information_limit = limit > 0;
    shifts.frequency = limit > 0 ? limit : nyquist;
    const double angle = setup.wavelength_nm * shifts.frequency;
    for (const auto& about : all_coefficients)
        shifts.radians[static_cast<std::size_t>(about.which)] = 2 * std::numbers::pi / setup.wavelength_nm *
                                                                std::abs(setup.lens.in_nanometres(about.which)) *
                                                                std::abs(aberration_term(about.which, angle));
    return shifts;
}

}  // namespace zentrix::lens
