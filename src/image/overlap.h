#pragma once

#include "image/errors.h"
#include "image/image.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace qorv::dm {

/// The bytes from the first to the last pixel of a view, including the gaps of strided rows.
struct byte_span
{
    std::uintptr_t begin, end;
};

template <class T>
byte_span bytes_of(const image<T>& view) noexcept
{
    const auto start = reinterpret_cast<std::uintptr_t>(view.data());
    if (view.size() <= 0) return {start, start};
    std::ptrdiff_t lowest = 0, highest = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const std::ptrdiff_t reach = (view.sizes()[axis] - 1) * view.strides()[axis];
        lowest += std::min<std::ptrdiff_t>(reach, 0);
        highest += std::max<std::ptrdiff_t>(reach, 0);
    }
    constexpr auto size = static_cast<std::ptrdiff_t>(sizeof(T));
    return {start + static_cast<std::uintptr_t>(lowest * size),
            start + static_cast<std::uintptr_t>((highest + 1) * size)};
}

/// True when the memory ranges of two views intersect. Interleaved views (the even and the odd columns of one image)
/// overlap in this sense although they share no pixel.
template <class A, class B>
bool overlap(const image<A>& a, const image<B>& b) noexcept
{
    const byte_span one = bytes_of(a), other = bytes_of(b);
    return one.begin < other.end && other.begin < one.end;
}

/// True when each pixel of one view is the same pixel of the other, so that an operation from one to the other is in
/// place.
template <class A, class B>
requires std::is_same_v<std::remove_const_t<A>, std::remove_const_t<B>>
bool same_pixels(const image<A>& a, const image<B>& b) noexcept
{
    bool same = static_cast<const void*>(a.data()) == static_cast<const void*>(b.data());
    for (int axis = 0; axis < 3; ++axis) {
        const bool steps = std::max(a.sizes()[axis], b.sizes()[axis]) > 1;
        same = same && (!steps || a.strides()[axis] == b.strides()[axis]);
    }
    return same;
}

/// Fails with errors::out_of_place unless the result is the source, pixel by pixel, or shares no memory with it. With
/// any other overlap pixels would be read after they were written.
template <class A, class B>
void require_in_place_or_apart(const image<A>& source, const image<B>& result)
{
    bool in_place = false;
    if constexpr (std::is_same_v<std::remove_const_t<A>, std::remove_const_t<B>>)
        in_place = same_pixels(source, result);
    require(in_place || !overlap(source, result), errors::out_of_place);
}

}  // namespace qorv::dm
