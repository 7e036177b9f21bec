#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds what the package's functions for waves use: the table of coefficients, the parameters of the lens, the
/// corrections in place, and spectra that are kept.
void add_correction(pybind11::module_& to);

}  // namespace zentrix::python
