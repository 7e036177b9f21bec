#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds the conversion of coefficients to and from other notations (lens/notation.h).
void add_notation(pybind11::module_& to);

}  // namespace zentrix::python
