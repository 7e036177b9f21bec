#pragma once

#include <cstdint>

namespace qorv::dm {

/// Ticks of the performance counter (Windows) or of the monotonic clock in nanoseconds (elsewhere).
std::int64_t performance_counter() noexcept;

/// Measures its own life and reports it to the host's trace counter `name`, on return and on a throw alike.
class timing_scope
{
  public:
    /// `name` is a constant text: the name of the native function, such as "WTFMulDM".
    explicit timing_scope(const char* name) noexcept : name_{name}, start_{performance_counter()} {}
    timing_scope(const timing_scope&) = delete;
    timing_scope& operator=(const timing_scope&) = delete;
    ~timing_scope();

  private:
    const char* name_;
    std::int64_t start_;
};

}  // namespace qorv::dm
