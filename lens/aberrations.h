#pragma once

#include <array>
#include <complex>
#include <cstddef>
#include <string>
#include <string_view>

/// Aberration coefficients in the usual notation: a name, a modulus in the unit of the panel's page and, unless the
/// aberration is round, an angle.
namespace zentrix::lens {

enum class coefficient : std::size_t
{
    C1,
    A1,
    B2,
    A2,
    C3,
    S3,
    A3,
    B4,
    D4,
    A4,
    C5,
    A5,
    R5,
    S5
};
inline constexpr std::size_t coefficient_count = 14;

/// Fixed properties of a coefficient.
struct coefficient_traits
{
    coefficient which;
    std::string_view name;
    std::string_view meaning;
    std::string_view unit;
    double nanometres;  ///< per unit
    int symmetry;       ///< m in cos(angle - m * azimuth); 0: round, no angle
    int divisor;        ///< of its term in the aberration function
};

/// All fourteen in the order of `coefficient`.
extern const std::array<coefficient_traits, coefficient_count> all_coefficients;

inline const coefficient_traits& traits(coefficient which) { return all_coefficients[static_cast<std::size_t>(which)]; }

/// Value of a coefficient. `modulus` is in the unit of the coefficient and may be negative (C1 < 0 is underfocus; with
/// an angle, the same as 180 degrees more). `angle_degrees` is counter-clockwise on the displayed image from the
/// direction to the right, as on the panel's knobs; 0 for a round coefficient.
struct polar
{
    double modulus = 0;
    double angle_degrees = 0;

    bool operator==(const polar&) const = default;
};

/// A set of coefficients, all zero at first.
class aberrations
{
  public:
    polar& operator[](coefficient which) { return values_[static_cast<std::size_t>(which)]; }
    const polar& operator[](coefficient which) const { return values_[static_cast<std::size_t>(which)]; }

    /// The coefficient modulus * exp(i angle) in nanometres.
    std::complex<double> in_nanometres(coefficient which) const;

    bool operator==(const aberrations&) const = default;

  private:
    std::array<polar, coefficient_count> values_{};
};

/// Reads `modulus` or, for a coefficient that is not round, `modulus@degrees`.
/// Throws  std::invalid_argument naming the coefficient, its unit and the text
polar parse_coefficient(coefficient which, const std::string& text);

}  // namespace zentrix::lens
