#include "host/program/help/other_names.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string_view>

namespace zentrix::program {

namespace {

struct other_names
{
    const char* names;  ///< separated by blanks, lower case
    const char* hint;
};

constexpr std::array habits{
    other_names{
        "defocus df dz focus underfocus overfocus",
        "Defocus is --C1 in nm, and C1 < 0 is underfocus: a defocus of 62 nm that counts underfocus as positive "
        "is --C1 -62"},
    other_names{"energy voltage ht hv e0 ev acceleration acceleration-voltage high-tension beam-energy volts",
                "The accelerating voltage is --kv, in kV: --kv 300"},
    other_names{"sampling px pixelsize pixel-size dx angpix apix scale nm-per-pixel",
                "The pixel size is --pixel, in nm: --pixel 0.02"},
    other_names{"cs spherical spherical-aberration", "Spherical aberration is --C3, in mm: --C3 1.2"},
    other_names{"astigmatism astig stig", "Two-fold astigmatism is --A1 MODULUS@DEGREES, in nm: --A1 14@35"},
    other_names{"coma", "Axial coma is --B2 MODULUS@DEGREES, in nm: --B2 380@110"},
    other_names{"lambda lam wl", "The wavelength is --wavelength, in nm"},
    other_names{"focal-spread defocus-spread delta cc", "The focus spread is --focus-spread, rms, in nm"},
    other_names{"semiangle alpha divergence angular-spread convergence-angle",
                "The beam convergence is --convergence, rms, in mrad"},
    other_names{"beam-tilt tilt-x tilt-y", "The beam tilt is --tilt X,Y, in mrad"},
    other_names{"out outfile output-file dest", "The result's file is -o FILE"},
    other_names{"in input infile file", "Input files are given without an option: zentrix info FILE"},
    other_names{"cmap colormap palette", "--colour shows phases in colours"},
    other_names{"threads workers procs parallel",
                "--jobs is the number of processes; each uses the environment's "
                "OMP_NUM_THREADS"},
    other_names{"force overwrite yes f y", "Output files are replaced without a question"},
    other_names{"invert inverse apply remove",
                "\"zentrix correct\" removes aberrations, \"zentrix aberrate\" applies "
                "them"},
    other_names{"verbose v debug", "--timing prints what takes how long"},
    other_names{"time profile", "--timing prints what takes how long"},
};

/// C12, phi12, C12a: a coefficient with two digits.
bool is_other_notation(const std::string& name)
{
    const std::size_t letters = name.starts_with("phi") ? 3 : name.starts_with("c") ? 1 : 0;
    return letters > 0 && name.size() >= letters + 2 && std::isdigit(static_cast<unsigned char>(name[letters])) != 0 &&
           std::isdigit(static_cast<unsigned char>(name[letters + 1])) != 0;
}

}  // namespace

std::string hint_for_other_name(const std::string& name)
{
    std::string plain;
    for (const char c : name) plain += c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (is_other_notation(plain))
        return "The coefficients are C1, A1, B2 and so on; \"zentrix convert C12=140A\" translates others";
    for (const auto& [names, hint] : habits) {
        std::istringstream words{names};
        for (std::string word; words >> word;)
            if (word == plain) return hint;
    }
    return "";
}

}  // namespace zentrix::program
