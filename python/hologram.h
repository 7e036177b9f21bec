#pragma once

#include <pybind11/pybind11.h>

namespace zentrix::python {

/// Adds `reconstruct` to the module: waves from holograms.
void add_hologram(pybind11::module_& to);

}  // namespace zentrix::python
