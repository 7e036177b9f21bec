#pragma once

#include "image/image.h"

#include <cstdint>

namespace qorv::library {

/// Whether two views with pixels share memory between their first and last bytes; strides may be negative. Interleaved
/// views count as sharing although no pixel does.
template <class A, class B>
bool overlap(const dm::image<A>& a, const dm::image<B>& b)
{
    struct range
    {
        std::uintptr_t begin, end;
    };
    const auto range_of = [](const auto& view) {
        std::ptrdiff_t low = 0;
        std::ptrdiff_t high = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::ptrdiff_t reach = (view.sizes()[i] - 1) * view.strides()[i];
            (reach < 0 ? low : high) += reach;
        }
        return range{reinterpret_cast<std::uintptr_t>(view.data() + low),
                     reinterpret_cast<std::uintptr_t>(view.data() + high + 1)};
    };
    const range first = range_of(a);
    const range second = range_of(b);
    return first.begin < second.end && second.begin < first.end;
}

}  // namespace qorv::library
