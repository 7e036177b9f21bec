#pragma once

#include <cstdint>

namespace ipu {

/// Adds a time in ticks of the performance counter to the host's trace counter `name`. Does nothing without a host.
void DLLTraceAddCounter(const char* name, std::int64_t ticks) noexcept;

}  // namespace ipu
