#pragma once

#include <complex>
#include <map>
#include <optional>

#include "lens/transfer.h"

namespace zentrix::host {

/// The parameters of one correction or simulation as a file or a command line gives them. What is not given is empty.
struct parameter_set
{
    std::optional<double> kilovolts;      ///< of an electron microscope
    std::optional<double> wavelength_nm;  ///< for waves other than electrons; not together with kilovolts
    std::optional<double> pixel_nm;
    std::map<lens::coefficient, lens::polar> coefficients;
    std::optional<double> focus_spread_nm, convergence_mrad, vibration_nm;  ///< rms widths, see lens::coherence
    std::optional<std::complex<double>> tilt_mrad;                          ///< see lens::optics
    std::optional<lens::damping> envelope;
};

/// `over` with the parameters of `under` where it has none. A voltage or wavelength of `over` replaces either.
parameter_set overlaid(const parameter_set& over, const parameter_set& under);

/// The wavelength [nm], of the voltage if that is given.
/// Throws  std::invalid_argument when neither is given
double wavelength_of(const parameter_set& parameters);

/// The optics of a complete set. Coefficients and widths that are not given are zero.
/// Throws  std::invalid_argument naming what is missing (voltage or wavelength, pixel size)
lens::optics optics_of(const parameter_set& parameters);

}  // namespace zentrix::host
