#pragma once

#include <xsimd/xsimd.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

/// Rearrangement of elements in vectors, for any instruction set. An element is `width` lanes: 1 for a real number, 2
/// for a complex one.
namespace qorv::dm::simd {

/// Lane i of the result is lane `index[i]` of a followed by b. xsimd has this shuffle for some instruction sets only;
/// the compiler's builtin works for all.
template <class T, class Arch, std::size_t... index>
xsimd::batch<T, Arch> shuffled(xsimd::batch<T, Arch> a, xsimd::batch<T, Arch> b, std::index_sequence<index...>)
{
    using batch = xsimd::batch<T, Arch>;
    using lanes [[gnu::vector_size(batch::size * sizeof(T))]] = T;
    using registers = typename batch::register_type;
    return batch((registers)__builtin_shufflevector((lanes)a.data, (lanes)b.data, index...));
}

/// Loads the first `count` lanes from memory, or all if there are fewer. The others become 0.
template <class Arch, class T>
xsimd::batch<T, Arch> load_first(const T* from, std::ptrdiff_t count)
{
    using batch = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t size = batch::size;
    if (count >= size) return batch::load_unaligned(from);
    T all[size] = {};
    std::memcpy(all, from, static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0)) * sizeof(T));
    return batch::load_unaligned(all);
}

/// Stores the first `count` lanes, or all if there are fewer.
template <class T, class Arch>
void store_first(const xsimd::batch<T, Arch>& values, T* to, std::ptrdiff_t count)
{
    constexpr std::ptrdiff_t size = xsimd::batch<T, Arch>::size;
    if (count >= size) return values.store_unaligned(to);
    T all[size];
    values.store_unaligned(all);
    std::memcpy(to, all, static_cast<std::size_t>(count) * sizeof(T));
}

/// Elements from both halves in turn: a0 b0 a1 b1 ..., of the low halves (half 0) or the high halves (half 1).
template <std::size_t width, std::size_t half, class T, class Arch>
xsimd::batch<T, Arch> interleaved(xsimd::batch<T, Arch> a, xsimd::batch<T, Arch> b)
{
    constexpr std::size_t size = xsimd::batch<T, Arch>::size;
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return shuffled(
            a, b,
            std::index_sequence<half * size / 2 + i / (2 * width) * width + i % width + (i / width % 2) * size...>{});
    }
    (std::make_index_sequence<size>{});
}

/// Complex numbers, their parts interleaved: the real part in both lanes of each number, the imaginary part in both,
/// and the parts exchanged.
template <class T, class Arch>
xsimd::batch<T, Arch> real_parts(xsimd::batch<T, Arch> v)
{
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return shuffled(v, v, std::index_sequence<i / 2 * 2 ...>{});
    }
    (std::make_index_sequence<xsimd::batch<T, Arch>::size>{});
}
template <class T, class Arch>
xsimd::batch<T, Arch> imaginary_parts(xsimd::batch<T, Arch> v)
{
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return shuffled(v, v, std::index_sequence<i / 2 * 2 + 1 ...>{});
    }
    (std::make_index_sequence<xsimd::batch<T, Arch>::size>{});
}
template <class T, class Arch>
xsimd::batch<T, Arch> exchanged_parts(xsimd::batch<T, Arch> v)
{
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return shuffled(v, v, std::index_sequence<(i ^ 1)...>{});
    }
    (std::make_index_sequence<xsimd::batch<T, Arch>::size>{});
}

/// The lanes of `even` and `odd` in turn, each in its own place.
template <class T, class Arch>
xsimd::batch<T, Arch> alternating(xsimd::batch<T, Arch> even, xsimd::batch<T, Arch> odd)
{
    constexpr std::size_t size = xsimd::batch<T, Arch>::size;
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return shuffled(even, odd, std::index_sequence<i + i % 2 * size...>{});
    }
    (std::make_index_sequence<size>{});
}

/// The even lanes (offset 0) or the odd ones (offset 1) of a followed by b: the real or the imaginary parts of complex
/// numbers.
template <std::size_t offset, class T, class Arch>
xsimd::batch<T, Arch> every_second(xsimd::batch<T, Arch> a, xsimd::batch<T, Arch> b)
{
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return shuffled(a, b, std::index_sequence<2 * i + offset...>{});
    }
    (std::make_index_sequence<xsimd::batch<T, Arch>::size>{});
}

/// The low half of single-precision lanes in double precision.
template <class Arch>
xsimd::batch<double, Arch> widened_low(xsimd::batch<float, Arch> v)
{
    using wide = xsimd::batch<double, Arch>;
    constexpr std::size_t size = wide::size;
    using double_lanes [[gnu::vector_size(size * sizeof(double))]] = double;
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        const auto half = __builtin_shufflevector(v.data, v.data, i...);
        return wide((typename wide::register_type) __builtin_convertvector(half, double_lanes));
    }
    (std::make_index_sequence<size>{});
}

/// The high half. For SSE2 as intrinsics, because GCC converts lane by lane otherwise: the survey is 10 % slower.
template <class Arch>
xsimd::batch<double, Arch> widened_high(xsimd::batch<float, Arch> v)
{
    if constexpr (std::is_same_v<Arch, xsimd::sse2>)
        return _mm_cvtps_pd(_mm_movehl_ps(v, v));
    else
        return [&]<std::size_t... i>(std::index_sequence<i...>)
        {
            return widened_low(shuffled(v, v, std::index_sequence<sizeof...(i) / 2 + i % (sizeof...(i) / 2)...>{}));
        }
    (std::make_index_sequence<xsimd::batch<float, Arch>::size>{});
}

/// The lanes of two vectors in double precision, rounded to single precision.
template <class Arch>
xsimd::batch<float, Arch> narrowed(xsimd::batch<double, Arch> low, xsimd::batch<double, Arch> high)
{
    using singles = xsimd::batch<float, Arch>;
    constexpr std::size_t size = xsimd::batch<double, Arch>::size;
    using half [[gnu::vector_size(size * sizeof(float))]] = float;
    const half low_half = __builtin_convertvector(low.data, half);
    const half high_half = __builtin_convertvector(high.data, half);
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return singles((typename singles::register_type)__builtin_shufflevector(low_half, high_half, i...));
    }
    (std::make_index_sequence<2 * size>{});
}

/// Transposes a square of elements, one vector a row. Each round interleaves the first half of the vectors with the
/// second, which moves one bit of an element's position from its vector's index to its place in the vector.
template <std::size_t width, class T, class Arch, std::size_t n>
void transpose(xsimd::batch<T, Arch> (&square)[n])
{
    static_assert(n * width == xsimd::batch<T, Arch>::size);
    if constexpr (n > 1)
        for (std::size_t round = 1; round < n; round *= 2) {
            xsimd::batch<T, Arch> next[n];
            for (std::size_t i = 0; i < n / 2; ++i) {
                next[2 * i] = interleaved<width, 0>(square[i], square[i + n / 2]);
                next[2 * i + 1] = interleaved<width, 1>(square[i], square[i + n / 2]);
            }
            for (std::size_t i = 0; i < n; ++i) square[i] = next[i];
        }
}

}  // namespace qorv::dm::simd
