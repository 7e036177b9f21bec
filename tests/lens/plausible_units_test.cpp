#include "lens/plausible_units.h"

#include <gtest/gtest.h>

using zentrix::lens::coefficient;

TEST(PlausibleUnits, DoubtsNameTheNumberAndTheOtherUnit)
{
    struct row
    {
        double wavelength_nm, pixel_nm;
        coefficient which;
        double modulus;
        const char* says;
    };
    for (const auto& [wavelength, pixel, which, modulus, says] :
         {row{0.002, 0.02, coefficient::C1, -62, ""},
          {0.002, 0.02, coefficient::C3, 1e-3, ""},     // 1 um, a corrected microscope
          {405, 6900, coefficient::C1, -36850000, ""},  // a wave of light, recorded without a lens
          {0.002, 0.02, coefficient::C1, -62e-9, "C1 is -6.2e-08 nm: are these metres?\n"},
          {0.002, 0.02, coefficient::C3, 1.2e6, "C3 is 1.2e+06 mm: are these nanometres?\n"},
          {405, 0.02, coefficient::C1, 0,
           "Scattering angles reach 1.01e+04 rad: check the units of wavelength (nm) and pixel size (nm).\n"},
          {0.002, 20000, coefficient::C1, 0, "The pixel size is 20000 nm: is it in another unit?\n"}}) {
        zentrix::lens::optics setup;
        setup.wavelength_nm = wavelength;
        setup.pixel_nm = pixel;
        setup.lens[which].modulus = modulus;
        EXPECT_EQ(zentrix::lens::doubts_about_units(setup), says);
    }
}
