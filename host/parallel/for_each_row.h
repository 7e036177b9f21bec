#pragma once

#include <algorithm>
#include <cstddef>

#include "host/parallel/in_parallel.h"

namespace zentrix::host {

/// Rows that a thread of for_each_row takes at once.
inline constexpr std::ptrdiff_t rows_at_once = 16;

/// How many of up to `threads` threads for_each_row uses; at least 1.
constexpr std::ptrdiff_t threads_for_rows(std::ptrdiff_t rows, std::ptrdiff_t threads)
{
    return std::clamp<std::ptrdiff_t>((rows + rows_at_once - 1) / rows_at_once, 1, threads);
}

/// Calls work(thread, y) once for each row, 0 <= y < rows, on up to `threads` threads, 0 <= thread <
/// threads_for_rows(rows, threads).
/// work  must not throw
template <class Work>
void for_each_row(std::ptrdiff_t rows, std::ptrdiff_t threads, const Work& work) noexcept
{
    in_parallel((rows + rows_at_once - 1) / rows_at_once, threads, [&](std::ptrdiff_t thread, std::ptrdiff_t item) {
        const auto end = std::min((item + 1) * rows_at_once, rows);
        for (auto y = item * rows_at_once; y < end; ++y)
            work(static_cast<std::size_t>(thread), static_cast<std::size_t>(y));
    });
}

}  // namespace zentrix::host
