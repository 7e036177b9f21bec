#include "host/program/help/other_names.h"

#include <array>
#include <cctype>
#include <span>
#include <sstream>

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
    other_names{"v", "-V prints the versions, --timing what takes how long"},
    other_names{"verbose debug", "--timing prints what takes how long"},
    other_names{"quiet q silent", "Results go to standard output, warnings and errors to standard error"},
    other_names{"time profile", "--timing prints what takes how long"},
};

constexpr std::array commands{
    other_names{"version", "zentrix --version prints the versions"},
    other_names{"view open show display gui",
                "\"zentrix panel\" shows a wave while its aberrations are turned, "
                "\"zentrix info\" describes a file, --png writes a picture"},
    other_names{"apply simulate add", "\"zentrix aberrate\" applies aberrations"},
    other_names{"remove restore deconvolve", "\"zentrix correct\" removes aberrations"},
    other_names{"filter smooth median blur mean max min sum stats statistics",
                "\"zentrix functions TEXT\" lists functions for this, \"zentrix call NAME\" calls them"},
    other_names{"run exec function", "\"zentrix call NAME\" calls a script function"},
    other_names{"dft transform spectrum", "\"zentrix fft\" transforms, \"zentrix ifft\" transforms back"},
    other_names{"png picture plot", "--png FILE writes a picture of a command's result"},
};

std::string hint_in(std::span<const other_names> table, const std::string& name)
{
    for (const auto& [names, hint] : table) {
        std::istringstream words{names};
        for (std::string word; words >> word;)
            if (word == name) return hint;
    }
    return "";
}

std::string plain(const std::string& name)
{
    std::string text;
    for (const char c : name) text += c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

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
    if (is_other_notation(plain(name)))
        return "The coefficients are C1, A1, B2 and so on; \"zentrix convert C12=140A\" translates others";
    return hint_in(habits, plain(name));
}

std::string hint_for_other_command(const std::string& name) { return hint_in(commands, plain(name)); }

}  // namespace zentrix::program
