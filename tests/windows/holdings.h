#pragma once

#include <windows.h>

#include <functional>

namespace windows_tests {

/// What this process and its user-interface thread hold.
struct holdings
{
    int graphics_objects, user_objects, windows, handles, threads;
    long bytes;  ///< allocated in the process's heap
};
holdings present_holdings();

/// How often a test repeats what must not grow: ZENTRIX_ROUNDS, or 10.
int rounds();

/// Calls `round` to fill caches, then rounds() times. Fails the test unless the second part has left nothing behind,
/// apart from what the system itself keeps. Prints the holdings before and after, and in longer runs also between them.
/// pastes  how often a round pastes text
void expect_flat(const std::function<void()>& round, int pastes = 0);

}  // namespace windows_tests
