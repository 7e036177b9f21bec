#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds the functions that zentrix.correct uses: the wavelength, the table of coefficients, the correction in place.
void add_correction(pybind11::module_& to);

}  // namespace zentrix::python
