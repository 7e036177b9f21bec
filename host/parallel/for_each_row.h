#pragma once

#include <algorithm>
#include <cstddef>

#include "host/parallel/in_parallel.h"

namespace zentrix::host {

/// Calls work(thread, y) once for each row, 0 <= y < rows, on up to `threads` threads, 0 <= thread < threads.
/// work  must not throw
template <class Work>
void for_each_row(std::ptrdiff_t rows, std::ptrdiff_t threads, const Work& work) noexcept
{
    constexpr std::ptrdiff_t rows_at_once = 16;
    in_parallel((rows + rows_at_once - 1) / rows_at_once, threads, [&](std::ptrdiff_t thread, std::ptrdiff_t item) {
        const auto end = std::min((item + 1) * rows_at_once, rows);
        for (auto y = item * rows_at_once; y < end; ++y)
            work(static_cast<std::size_t>(thread), static_cast<std::size_t>(y));
    });
}

}  // namespace zentrix::host
