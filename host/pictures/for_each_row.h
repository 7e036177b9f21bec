#pragma once

#include <algorithm>
#include <cstddef>
#include <thread>

#include "host/fft/parallel.h"

namespace zentrix::host {

/// Threads for a picture: one for each processor, fewer for pictures so small that starting threads would take longer.
inline std::ptrdiff_t threads_for(std::ptrdiff_t width, std::ptrdiff_t height)
{
    constexpr std::ptrdiff_t worth_a_thread = 262144;
    const std::ptrdiff_t processors = std::max(1U, std::thread::hardware_concurrency());
    return std::clamp<std::ptrdiff_t>(width * height / worth_a_thread, 1, processors);
}

/// Calls work(thread, y) once for each row, 0 <= y < rows, on up to `threads` threads, 0 <= thread < threads.
/// work  must not throw
template <class Work>
void for_each_row(int rows, std::ptrdiff_t threads, const Work& work) noexcept
{
    constexpr std::ptrdiff_t rows_at_once = 16;
    in_parallel((rows + rows_at_once - 1) / rows_at_once, threads, [&](std::ptrdiff_t thread, std::ptrdiff_t item) {
        const auto end = std::min<std::ptrdiff_t>((item + 1) * rows_at_once, rows);
        for (auto y = item * rows_at_once; y < end; ++y)
            work(static_cast<std::size_t>(thread), static_cast<std::size_t>(y));
    });
}

}  // namespace zentrix::host
