#include "lens/plausible_units.h"

#include <cstdio>
#include <stdexcept>
#include <string>

#include "lens/electron.h"

namespace zentrix::lens {

namespace {

std::string text(double number, int digits)
{
    char written[32];
    std::snprintf(written, sizeof written, "%.*g", digits, number);
    return written;
}

}  // namespace

void check_kilovolts(double kilovolts)
{
    const double wavelength = electron_wavelength(kilovolts);  // throws for numbers that are no voltage
    if (kilovolts > 3000)
        throw std::invalid_argument{text(kilovolts, 15) +
                                    " kV: are these volts? kv is in kilovolts, 300 for 300,000 V."};
    if (kilovolts < 1)
        throw std::invalid_argument{text(kilovolts, 15) +
                                    " kV: are these megavolts? kv is in kilovolts; for slow electrons give the "
                                    "wavelength, " +
                                    text(wavelength, 6) + " nm."};
}

void check_pixel_size(double nanometres)
{
    if (!(nanometres > 0)) throw std::invalid_argument{"The pixel size must be a positive number of nanometres."};
    if (nanometres < 1e-4)
        throw std::invalid_argument{"The pixel size is " + text(nanometres, 15) +
                                    " nm: are these metres? pixel is in nanometres."};
}

}  // namespace zentrix::lens
