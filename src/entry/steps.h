#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "binding/host_functions.h"
#include "entry/lock.h"
#include "image/errors.h"
#include "image/visit.h"

/// The steps that most script functions share. They fix the order and wording of checks and the handling of locks.
namespace qorv::dm {

using either_complex = element_list<std::complex<float>, std::complex<double>>;

/// The host's code of an element type.
template <class T>
constexpr std::uint32_t code_of = static_cast<std::uint32_t>(data_type_of<T>);

/// An image to be locked by with_locks, for reading or for writing.
struct reading
{
    using lock = read_lock;
    const binding::image_ref& image;
};
struct writing
{
    using lock = write_lock;
    const binding::image_ref& image;
};

namespace details {

template <class Use>
auto use_locked(const Use& use)
{
    return use();
}

template <class Use, class Access, class... Rest>
auto use_locked(const Use& use, const Access& access, const Rest&... rest)
{
    typename Access::lock lock{access.image};
    const auto use_rest = [&](const auto&... locks) { return use(lock, locks...); };
    if constexpr (std::is_void_v<decltype(use_locked(use_rest, rest...))>) {
        use_locked(use_rest, rest...);
        lock.release();
    } else {
        auto result = use_locked(use_rest, rest...);
        lock.release();
        return result;
    }
}

}  // namespace details

/// Locks images, uses the locks and releases them: with_locks(reading{source}, writing{destination}, use) calls
/// use(const read_lock&, const write_lock&) and returns its result.
///
/// Images are locked from left to right and released from right to left, so that a destination named after its sources
/// is released first; the release of a write lock notifies the host of the changed pixels. When a lock, `use` or a
/// release throws, the remaining locks are released before the exception leaves.
template <class... AccessesAndUse>
auto with_locks(const AccessesAndUse&... accesses_and_use)
{
    constexpr std::size_t count = sizeof...(AccessesAndUse) - 1;
    const auto all = std::tie(accesses_and_use...);
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return details::use_locked(std::get<count>(all), std::get<i>(all)...);
    }
    (std::make_index_sequence<count>{});
}

/// The destination that the script passed, or a new clone of the source.
inline binding::image_ref or_clone_of(binding::image_ref destination, const binding::image_ref& source)
{
    return destination ? std::move(destination) : binding::ImageClone(source);
}

/// Throws  errors::parameters_invalid for a null reference
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

/// Throws  errors::different_size unless width and height are equal
inline void require_same_size(const image_lock& a, const image_lock& b)
{
    require(a.width() == b.width() && a.height() == b.height(), errors::different_size);
}

/// An image's size along an axis; 1 beyond its own dimensions.
inline std::uint32_t size_along(const binding::image_ref& image, std::uint32_t axis)
{
    return axis < binding::ImageGetNumDimensions(image) ? binding::ImageGetDimensionSize(image, axis) : 1u;
}

/// The same check before the images are locked.
inline void require_same_size(const binding::image_ref& a, const binding::image_ref& b)
{
    require(size_along(a, 0) == size_along(b, 0) && size_along(a, 1) == size_along(b, 1), errors::different_size);
}

/// A new image of another element type with the sizes of `like`.
inline binding::image_ref new_image_like(std::string_view name, std::uint32_t code, const binding::image_ref& like)
{
    std::vector<std::uint32_t> sizes;
    for (std::uint32_t axis = 0; axis < binding::ImageGetNumDimensions(like); ++axis)
        sizes.push_back(binding::ImageGetDimensionSize(like, axis));
    return binding::NewImage(name, code, sizes);
}

/// The first plane as one flat sequence of width x height elements, for kernels that know no strides.
/// Throws  errors::parameters_invalid when the plane has gaps
template <class T>
T* flat_plane(const image<T>& pixels)
{
    require(pixels.plane(0).contiguous(), errors::parameters_invalid);
    return pixels.data();
}

/// All planes as one flat sequence of size() elements.
/// Throws  errors::parameters_invalid when the image has gaps
template <class T>
T* flat(const image<T>& pixels)
{
    require(pixels.contiguous(), errors::parameters_invalid);
    return pixels.data();
}

}  // namespace qorv::dm
