#pragma once

#include <string>

#include "host/parameters/parameter_set.h"
#include "host/windows/panel_handler.h"

/// The state of the panel as a set of parameters, which files and records have.
namespace zentrix::host {

/// All coefficients that are not zero, voltage, pixel size, envelope and widths.
parameter_set parameters_of(const lens::aberrations& lens, const microscope& scope);

/// A set as the panel can show it.
struct panel_parameters
{
    lens::aberrations lens;  ///< angles in whole degrees
    microscope scope;
    std::string note;  ///< a sentence on what differs from the set; empty: nothing
};

/// Coefficients that the set does not have are zero; other parameters that it does not have are those of `present`.
/// Angles are rounded.
/// Throws  std::invalid_argument for a wavelength and for a tilt, which the panel does not have
panel_parameters for_panel(const parameter_set& set, const microscope& present);

}  // namespace zentrix::host
