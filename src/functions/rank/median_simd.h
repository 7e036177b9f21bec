#pragma once

#include <xsimd/xsimd.hpp>

#include <cstddef>
#include <cstring>

/// Steps of sorting networks on vectors. `Batch` is xsimd::batch<T, Arch>, so that each instruction set has its own.
namespace qorv::functions {

/// Puts the smaller values in `a`, the larger ones in `b`.
template <class Batch>
void exchange(Batch& a, Batch& b)
{
    const Batch smaller = xsimd::min(a, b);
    b = xsimd::max(a, b);
    a = smaller;
}

/// Stores the first `count` values, or all if there are fewer.
template <class Batch>
void store_first(const Batch& values, typename Batch::value_type* out, std::ptrdiff_t count)
{
    constexpr std::ptrdiff_t lanes = Batch::size;
    if (count >= lanes) return values.store_unaligned(out);
    typename Batch::value_type all[lanes];
    values.store_unaligned(all);
    std::memcpy(out, all, static_cast<std::size_t>(count) * sizeof(all[0]));
}

}  // namespace qorv::functions
