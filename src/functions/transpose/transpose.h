#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <array>
#include <cstddef>

/// Exchange of two axes of a volume. Elements are only moved, so that the number of their bytes is all that matters.
namespace qorv::functions {

/// A volume of elements of any type: sizes along x, y, z in elements, strides in bytes.
struct voxels
{
    std::byte* data;
    std::array<std::ptrdiff_t, 3> sizes;
    std::array<std::ptrdiff_t, 3> strides;
};

template <class T>
voxels voxels_of(const dm::image<T>& view)
{
    voxels result{const_cast<std::byte*>(reinterpret_cast<const std::byte*>(view.data())), view.sizes(), {}};
    for (int axis = 0; axis < 3; ++axis)
        result.strides[axis] = view.strides()[axis] * static_cast<std::ptrdiff_t>(sizeof(T));
    return result;
}

/// to(x, y, z) = from(z, y, x). In place when both have the same data pointer: mirrored elements are exchanged.
/// from            the source; it is only read unless it is the destination
/// to              a source of nx x ny x nz needs a destination of nz x ny x nx; must not overlap the source otherwise
/// element_bytes   >= 1
/// Throws  errors::invalid_image_size for other sizes, before anything is written; in place therefore unless nx = nz
void transpose_xz(const voxels& from, const voxels& to, std::size_t element_bytes);

/// to(x, y, z) = from(x, z, y), sizes (nx, nz, ny); otherwise like `transpose_xz`.
void transpose_yz(const voxels& from, const voxels& to, std::size_t element_bytes);

enum class transposition
{
    xz,
    yz
};

/// Checked volumes, out of place or in place as above.
using transpose_kernel = void(const voxels& from, const voxels& to, std::size_t element_bytes, transposition which);

/// Element by element in the destination's order.
transpose_kernel transpose_plain;

/// Long stretches of rows through small blocks; x and z of elements with 1, 2, 4, 8 or 16 bytes, y and z of any. Other
/// elements, and volumes without contiguous rows, are passed to the plain variant. Defined in transpose_simd.h,
/// instantiated for each instruction set in a file of its own.
template <class Arch>
void transpose_simd(const voxels& from, const voxels& to, std::size_t element_bytes, transposition which);

dm::variants<transpose_kernel> transpose_variants();

}  // namespace qorv::functions
