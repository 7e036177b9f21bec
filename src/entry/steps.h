#pragma once

#include <complex>
#include <cstdint>

#include "binding/host_functions.h"
#include "entry/lock.h"
#include "image/errors.h"
#include "image/visit.h"

/// The steps that most script functions share, so that their order and wording cannot drift.
namespace qorv::dm {

/// The destination, or a new clone of the source where the script gave none.
inline binding::image_ref or_clone_of(binding::image_ref destination, const binding::image_ref& source)
{
    return destination ? std::move(destination) : binding::ImageClone(source);
}

/// Fails with errors::parameters_invalid for a null reference that a function cannot do without.
inline void require_image(const binding::image_ref& image)
{
    require(static_cast<bool>(image), errors::parameters_invalid);
}

/// The host's code of an image's element type.
/// Throws  errors::parameters_invalid for a null reference, `text` for a type that is not in the list
template <class List>
std::uint32_t required_type(List list, const binding::image_ref& image, const char* text)
{
    require_image(image);
    const std::uint32_t code = binding::ImageGetDataType(image);
    require(has_type(list, code), text);
    return code;
}

/// Fails with errors::different_size unless width and height agree.
inline void require_same_size(const image_lock& a, const image_lock& b)
{
    require(a.width() == b.width() && a.height() == b.height(), errors::different_size);
}

/// An image's size along an axis; 1 beyond its own dimensions.
inline std::uint32_t size_along(const binding::image_ref& image, std::uint32_t axis)
{
    return axis < binding::ImageGetNumDimensions(image) ? binding::ImageGetDimensionSize(image, axis) : 1u;
}

/// Same check before any lock is taken.
inline void require_same_size(const binding::image_ref& a, const binding::image_ref& b)
{
    require(size_along(a, 0) == size_along(b, 0) && size_along(a, 1) == size_along(b, 1), errors::different_size);
}

/// The first plane as one flat sequence of width x height elements, for kernels that know no strides.
/// Throws  errors::parameters_invalid when the host's image is not stored so
template <class T>
T* flat_plane(const image<T>& pixels)
{
    require(pixels.plane(0).contiguous(), errors::parameters_invalid);
    return pixels.data();
}

/// All planes as one flat sequence of size() elements. Throws as flat_plane.
template <class T>
T* flat(const image<T>& pixels)
{
    require(pixels.contiguous(), errors::parameters_invalid);
    return pixels.data();
}

}  // namespace qorv::dm
