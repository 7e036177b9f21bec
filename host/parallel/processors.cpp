#include "host/parallel/processors.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sched.h>
#endif

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <thread>

namespace zentrix::host {

namespace {

/// Read early, because other threads may change the environment later.
const std::ptrdiff_t limit = thread_limit(std::getenv("OMP_NUM_THREADS"));

/// 0 if unknown: Linux with more than 1024 processors, a Windows process in several groups of them.
std::ptrdiff_t permitted_processors() noexcept
{
#ifdef _WIN32
    DWORD_PTR own = 0, all = 0;
    return GetProcessAffinityMask(GetCurrentProcess(), &own, &all) ? std::popcount(std::uint64_t{own}) : 0;
#else
    cpu_set_t own;
    return sched_getaffinity(0, sizeof own, &own) == 0 ? CPU_COUNT(&own) : 0;
#endif
}

}  // namespace

std::ptrdiff_t processors() noexcept
{
    std::ptrdiff_t count = permitted_processors();
    if (count == 0) count = std::thread::hardware_concurrency();
    return std::clamp<std::ptrdiff_t>(count, 1, limit);
}

std::ptrdiff_t thread_limit(const char* text) noexcept
{
    const long number = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
    return number > 0 ? number : std::numeric_limits<std::ptrdiff_t>::max();
}

}  // namespace zentrix::host
