#include "lens/aberrations.h"

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "lens/numbers.h"

namespace zentrix::lens {

// In the order and the units of the panel's pages.
const std::array<coefficient_traits, coefficient_count> all_coefficients{{
    {coefficient::C1, "C1", "defocus, negative is underfocus", "nm", 1, 0, 2},
    {coefficient::A1, "A1", "two-fold astigmatism", "nm", 1, 2, 2},
    {coefficient::B2, "B2", "axial coma", "nm", 1, 1, 1},
    {coefficient::A2, "A2", "three-fold astigmatism", "nm", 1, 3, 3},
    {coefficient::C3, "C3", "spherical aberration", "mm", 1e6, 0, 4},
    {coefficient::S3, "S3", "axial star aberration", "um", 1e3, 2, 1},
    {coefficient::A3, "A3", "four-fold astigmatism", "um", 1e3, 4, 4},
    {coefficient::B4, "B4", "fourth-order axial coma", "um", 1e3, 1, 1},
    {coefficient::D4, "D4", "three-lobe aberration", "um", 1e3, 3, 1},
    {coefficient::A4, "A4", "five-fold astigmatism", "um", 1e3, 5, 5},
    {coefficient::C5, "C5", "fifth-order spherical aberration", "mm", 1e6, 0, 6},
    {coefficient::A5, "A5", "six-fold astigmatism", "mm", 1e6, 6, 6},
    {coefficient::R5, "R5", "fifth-order rosette aberration", "mm", 1e6, 4, 1},
    {coefficient::S5, "S5", "fifth-order star aberration", "mm", 1e6, 2, 1},
}};

std::complex<double> aberrations::in_nanometres(coefficient which) const
{
    const polar& value = (*this)[which];
    const double modulus = value.modulus * traits(which).nanometres;
    if (traits(which).symmetry == 0) return modulus;
    const double angle = value.angle_degrees * std::numbers::pi / 180;
    return {modulus * std::cos(angle), modulus * std::sin(angle)};
}

polar parse_coefficient(coefficient which, const std::string& text)
{
    const coefficient_traits& about = traits(which);
    const bool is_round = about.symmetry == 0;
    const auto at = is_round ? std::string::npos : text.find('@');
    const auto modulus = parse_number(text.substr(0, at));
    const auto angle = at == std::string::npos ? 0.0 : parse_number(text.substr(at + 1));
    if (!modulus || !angle)
        throw std::invalid_argument{std::string{about.name} + " is " +
                                    (is_round ? "a number" : "MODULUS or MODULUS@DEGREES") + " in " +
                                    std::string{about.unit} + ", not \"" + text + "\""};
    return {*modulus, *angle};
}

}  // namespace zentrix::lens
