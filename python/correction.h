#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds what zentrix.correct is made of: the wavelength, the coefficients' names and units, the correction in place.
void add_correction(pybind11::module_& to);

}  // namespace zentrix::python
