#pragma once

#include <xsimd/xsimd.hpp>

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

}  // namespace qorv::functions
