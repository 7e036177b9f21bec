#include "lens/plausible_units.h"

#include <cmath>
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

void check_wavelength(double nanometres)
{
    if (!(nanometres > 0)) throw std::invalid_argument{"The wavelength must be a positive number of nanometres."};
    if (nanometres < 1e-6)
        throw std::invalid_argument{"The wavelength is " + text(nanometres, 15) +
                                    " nm: are these metres? wavelength is in nanometres."};
}

std::string doubts_about_units(const optics& setup)
{
    std::string doubts;
    for (const auto& about : all_coefficients) {
        const double modulus = setup.lens[about.which].modulus, length = std::abs(modulus) * about.nanometres;
        if (length == 0 || (length >= 1e-4 && length <= 1e11)) continue;
        doubts += std::string{about.name} + " is " + text(modulus, 6) + " " + std::string{about.unit} +
                  (length < 1 ? ": are these metres?\n" : ": are these nanometres?\n");
    }
    const bool is_light = setup.wavelength_nm > 100;
    const double angle = setup.wavelength_nm / setup.pixel_nm / 2;
    if (angle > (is_light ? 10 : 2))
        doubts += "Scattering angles reach " + text(angle, 3) +
                  " rad: check the units of wavelength (nm) and pixel size (nm).\n";
    if (setup.wavelength_nm < 0.1 && setup.pixel_nm > 1000)
        doubts += "The pixel size is " + text(setup.pixel_nm, 6) + " nm: is it in another unit?\n";
    return doubts;
}

}  // namespace zentrix::lens
