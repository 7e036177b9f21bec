#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace qorv::library {

/// Calls `work(step)` with the distance of a row's neighbours: as a compile-time 1 for the usual contiguous row, so
/// that the loop inside can be vectorised, and as a number for a strided one.
template <class Work>
decltype(auto) with_step(std::ptrdiff_t step, Work&& work)
{
    if (step == 1) return std::forward<Work>(work)(std::integral_constant<std::ptrdiff_t, 1>{});
    return std::forward<Work>(work)(step);
}

}  // namespace qorv::library
