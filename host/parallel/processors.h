#pragma once

#include <cstddef>

namespace zentrix::host {

/// Processors for the threads of one job: those that the calling thread (Windows: the process) may run on, but no more
/// than OMP_NUM_THREADS; at least 1. The variable is read when the program or module is loaded, as OpenMP does.
std::ptrdiff_t processors() noexcept;

/// The limit that a value of OMP_NUM_THREADS sets. Of a list such as "4,2", the first number counts. There is no limit
/// (the largest number) when the text is null, or does not begin with a positive number.
std::ptrdiff_t thread_limit(const char* text) noexcept;

}  // namespace zentrix::host
