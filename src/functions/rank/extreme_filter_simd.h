#pragma once

#include "functions/rank/extreme_filter.h"

// Left to the compiler's vectoriser, which finds the best instructions for all eight element types; xsimd compares and
// selects even where SSE2 has a minimum and maximum of integers.
namespace qorv::functions {

template <class Arch, class T, extreme which>
inline T better(T a, T b)
{
    if constexpr (which == extreme::maximum)
        return a > b ? a : b;
    else
        return a < b ? a : b;
}

template <class Arch, class T, extreme which>
void extreme_rows<Arch, T, which>::merge(const T* a, const T* b, T* out, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) out[i] = better<Arch, T, which>(a[i], b[i]);
}

template <class Arch, class T, extreme which>
void extreme_rows<Arch, T, which>::merge(const T* a, const T* b, const T* c, T* out, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i)
        out[i] = better<Arch, T, which>(c[i], better<Arch, T, which>(a[i], b[i]));
}

template <class Arch, class T, extreme which>
void extreme_rows<Arch, T, which>::merge(const T* a, const T* b, const T* c, const T* d, T* out, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T ab = better<Arch, T, which>(a[i], b[i]);
        const T cd = better<Arch, T, which>(c[i], d[i]);
        out[i] = better<Arch, T, which>(cd, ab);
    }
}

template <class Arch, class T, extreme which>
void extreme_rows<Arch, T, which>::merge_into_head(const T* row, T* head, const T* tail, T* out, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T best = better<Arch, T, which>(row[i], head[i]);
        head[i] = best;
        out[i] = better<Arch, T, which>(tail[i], best);
    }
}

}  // namespace qorv::functions
