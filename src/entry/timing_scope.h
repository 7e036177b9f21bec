#pragma once

#include <cstdint>

namespace qorv::dm {

/// Ticks of the performance counter (Windows) or of the monotonic clock in nanoseconds (elsewhere).
std::int64_t performance_counter() noexcept;

/// Reports its lifetime in ticks to the host's trace counter `name`, also when the scope is left by an exception.
class timing_scope
{
  public:
    /// name   a string literal, by convention the name of the native function, such as "WTFMulDM"
    explicit timing_scope(const char* name) noexcept : name_{name}, start_{performance_counter()} {}
    timing_scope(const timing_scope&) = delete;
    timing_scope& operator=(const timing_scope&) = delete;
    ~timing_scope();

  private:
    const char* name_;
    std::int64_t start_;
};

}  // namespace qorv::dm
