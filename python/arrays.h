#pragma once

#include <pybind11/numpy.h>

#include <cstdint>

#include "host/objects/image.h"
#include "python/python_object.h"

// NumPy 2 moved the element size, alignment and flags within its C structure of a dtype, and pybind11 2.10 reads them
// where NumPy 1 has them. What else this module reads through pybind11 (an array's data, shape, strides, base and
// flags, a dtype's kind) has the same place in both. Use of these members, and of the arrays that pybind11 lays out
// with them, is an error of compilation.
#pragma GCC poison itemsize nbytes array_t

/// NumPy arrays as host images and vice versa, sharing the same memory.
namespace zentrix::python {

/// The host image over an array's elements: an array of shape (n,), (ny, nx) or (nz, ny, nx) is an image of n, nx x ny
/// or nx x ny x nz elements. Strides are arbitrary, including negative ones. A read-only array, or one whose elements
/// overlap in memory, becomes an image that refuses write locks. The image keeps the array alive. An array made by
/// array_of returns its original image. An array with unaligned elements, or with strides that are not a multiple of
/// the element size, is copied; the image of the copy refuses write locks, too.
/// Throws  py::type_error, py::value_error that describe the array and the remedy
host::image_ref image_of(const py::array& array);

/// An array over the elements of an image, which the array keeps alive.
/// Throws  py::type_error for an element type that NumPy does not have
py::array array_of(const host::image_ref& image);

/// Whether array and image have the same memory, element type, shape and strides.
bool shows(const py::array& array, const host::image& image);

/// The number of notifications to the host that the pixels of this array's image have changed.
std::uint64_t notifications(const py::array& array);

}  // namespace zentrix::python
