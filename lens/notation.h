#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lens/aberrations.h"

/// Coefficients in the notations of other programs and of the literature. docs/notation.md has the table.
namespace zentrix::lens {

enum class notation
{
    /// C10, C12, phi12, ...: the aberration function is 2 pi / lambda times the sum of
    /// C_nm theta^(n+1) cos(m (phi - phi_nm)) / (n + 1).
    /// Source  Krivanek, Dellby, Lupini, Ultramicroscopy 78 (1999) 1-11, with modulus and azimuth
    polar,
    /// C10, C12a, C12b, ...: the same with C_nma = C_nm cos(m phi_nm) and C_nmb = C_nm sin(m phi_nm).
    /// Source  Krivanek, Dellby, Lupini, Ultramicroscopy 78 (1999) 1-11
    cartesian,
    /// C1, A1, phiA1, ...: the names of `coefficient`, but B2, S3, B4, D4, S5 and R5 multiply powers of w instead of
    /// its conjugate.
    /// Source  Uhlemann, Haider, Ultramicroscopy 72 (1998) 109-119
    corrector
};

/// Units and directions of the other program.
struct notation_frame
{
    double length_nm = 0;     ///< its unit of length; 0: each coefficient has the unit of coefficient_traits
    bool radians = false;     ///< its unit of angles; otherwise degrees
    bool clockwise = false;   ///< its azimuth grows clockwise on the displayed image, as with y downwards
    double zero_degrees = 0;  ///< the direction of its azimuth 0, counter-clockwise from right on the displayed image
};

using named_numbers = std::vector<std::pair<std::string, double>>;

/// All coefficients of `lens` in a notation, 25 numbers in the order of `coefficient`; each modulus is followed by its
/// angle. Azimuths are in [0, 360 / m) degrees, angles of `corrector` in [0, 360).
named_numbers to_notation(const aberrations& lens, notation to, const notation_frame& frame);

/// The coefficients that `numbers` give; all others are 0. Angles are in [0, 360) degrees. A negative modulus stays
/// negative in the notations that have moduli.
/// Also accepted: "defocus", positive if underfocused, for -C1, and "Cs" for C3.
/// Throws  std::invalid_argument for a name that the notation does not have ("C22 is not a coefficient of this
///         notation.") and for one that is given twice
aberrations from_notation(const named_numbers& numbers, notation from, const notation_frame& frame);

}  // namespace zentrix::lens
