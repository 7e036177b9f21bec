#include "entry/timing_scope.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <chrono>
#endif

#include "framework/trace.h"

namespace qorv::dm {

std::int64_t performance_counter() noexcept
{
#ifdef _WIN32
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return ticks.QuadPart;
#else
    return std::chrono::nanoseconds{std::chrono::steady_clock::now().time_since_epoch()}.count();
#endif
}

timing_scope::~timing_scope() { ipu::DLLTraceAddCounter(name_, performance_counter() - start_); }

}  // namespace qorv::dm
