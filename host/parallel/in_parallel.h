#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

#include "host/parallel/processors.h"

namespace zentrix::host {

/// Threads for a job on an image: one for each of processors(), fewer for images so small that starting threads would
/// take longer.
inline std::ptrdiff_t threads_for(std::ptrdiff_t pixel_count)
{
    constexpr std::ptrdiff_t worth_a_thread = 1 << 18;
    return std::clamp<std::ptrdiff_t>(pixel_count / worth_a_thread, 1, processors());
}

/// Calls work(thread, item) once for each item, 0 <= item < count, on up to min(threads, count) threads, 0 <= thread <
/// min(threads, count).
/// The calling thread is one of them; the others end before this returns, so that a forked child misses none. Where the
/// system starts no more threads, those that run do the whole work.
/// work  must not throw
template <class Work>
void in_parallel(std::ptrdiff_t count, std::ptrdiff_t threads, const Work& work) noexcept
{
    std::atomic<std::ptrdiff_t> next{0};
    const auto take_items = [&](std::ptrdiff_t thread) {
        for (auto item = next++; item < count; item = next++) work(thread, item);
    };
    std::vector<std::jthread> others;
    try {
        const auto all = std::max<std::ptrdiff_t>(std::min(threads, count), 1);
        others.reserve(static_cast<std::size_t>(all - 1));
        for (std::ptrdiff_t thread = 1; thread < all; ++thread) others.emplace_back(take_items, thread);
    } catch (const std::exception&) {  // no memory, or no more threads
    }
    take_items(0);
}

}  // namespace zentrix::host
