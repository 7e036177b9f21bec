#pragma once

#include <pybind11/numpy.h>

#include <cstdint>

#include "host/objects/image.h"
#include "python/python_object.h"

/// NumPy arrays as host images and back, over the same memory.
namespace zentrix::python {

/// The host image over an array's elements: shape (n,), (ny, nx) or (nz, ny, nx) is n, nx x ny, nx x ny x nz. Any
/// strides will do, negative ones too. An array that may not be written, or whose elements share memory among
/// themselves, makes an image that refuses write locks. The image keeps the array; an array that came from array_of
/// gives its own image back.
/// Throws  py::type_error, py::value_error saying which array it is and what to do
host::image_ref image_of(const py::array& array);

/// An array over an image's elements, which it keeps.
/// Throws  py::type_error for an element type that NumPy does not have
py::array array_of(const host::image_ref& image);

/// Whether both are the same view of the same memory.
bool shows(const py::array& array, const host::image& image);

/// How often the host was told that the pixels of this array's image changed.
std::uint64_t notifications(const py::array& array);

}  // namespace zentrix::python
