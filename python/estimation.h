#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds what zentrix.estimate uses: the search for the aberrations of a wave.
void add_estimation(pybind11::module_& to);

}  // namespace zentrix::python
