#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds what zentrix.unwrap uses: the unwrapping of a plane in place, with its report.
void add_unwrapping(pybind11::module_& to);

}  // namespace zentrix::python
