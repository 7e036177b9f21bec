#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds what zentrix.read and zentrix.write use.
void add_files(pybind11::module_& to);

}  // namespace zentrix::python
