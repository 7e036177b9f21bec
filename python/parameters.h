#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds the reader and the writer of parameter files (host/parameters/parameter_file.h).
void add_parameters(pybind11::module_& to);

}  // namespace zentrix::python
