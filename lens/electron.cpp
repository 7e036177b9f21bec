#include "lens/electron.h"

#include <cmath>
#include <stdexcept>

namespace zentrix::lens {

double electron_wavelength(double kilovolts)
{
    if (!(kilovolts > 0) || !std::isfinite(kilovolts))
        throw std::invalid_argument{"The accelerating voltage must be a positive number of kilovolts."};
    // CODATA 2018 (Tiesinga, Mohr, Newell, Taylor, Rev. Mod. Phys. 93 (2021) 025010); the first three are exact.
    constexpr double planck = 6.62607015e-34;           // J s
    constexpr double light_speed = 299792458.0;         // m / s
    constexpr double charge = 1.602176634e-19;          // C
    constexpr double electron_mass = 9.1093837015e-31;  // kg
    const double energy = charge * kilovolts * 1e3;
    const double rest_energy = electron_mass * light_speed * light_speed;
    return planck * light_speed / std::sqrt(energy * (energy + 2 * rest_energy)) * 1e9;
}

}  // namespace zentrix::lens
