#pragma once

#include "host/engine/engine.h"

#include <array>
#include <cstdint>

/// Makes allocations of the library fail. On Linux, this program replaces operator new for itself and for the libraries
/// that it loads. Allocations count only while the library runs: a host made ready by `watch` marks all calls between
/// library and host, so that the host's own memory is never short. On Windows, the malloc that the library imports is
/// replaced, so that all its allocations count, and no others.
namespace faults {

/// Makes the host mark all calls between it and the library. To be called before the library is linked to it.
void watch(zentrix::host::engine& host);

/// What allocation_plan::all_later can be. On Windows not true: when an exception gets no memory of its own, GCC's
/// runtime locks a mutex; its first locking allocates, fails, throws, locks, and so on until the stack overflows.
#ifdef _WIN32
inline constexpr std::array all_later_or_not = {false};
#else
inline constexpr std::array all_later_or_not = {false, true};
#endif

/// Which allocations of the library fail.
struct allocation_plan
{
    std::uint64_t first = 0;  ///< counted from 1; 0: none
    bool all_later = false;   ///< also all after the first
};

/// Replaces the plan and resets the count. The library must be loaded.
void plan_allocations(allocation_plan plan);
/// The library's allocations since the last plan.
std::uint64_t allocations();
/// The allocations that failed since the last plan.
std::uint64_t failed_allocations();

/// While it exists, the library runs on this thread.
class in_library
{
  public:
    explicit in_library(bool runs = true) noexcept;
    ~in_library();
    in_library(const in_library&) = delete;
    in_library& operator=(const in_library&) = delete;

  private:
    bool before_;
};

}  // namespace faults
