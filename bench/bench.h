#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

/// Times kernels after a check of their results: ns per pixel, the median of several runs, and ratios within one run.
namespace bench {

struct timing
{
    double median_ns;  ///< per pixel
    double best_ns;    ///< per pixel
};

/// Processor time of the program, which depends less on the load of the machine than real time; for work of one thread
/// that lasts milliseconds.
struct processor_clock
{
    using duration = std::chrono::microseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<processor_clock, duration>;
    static constexpr bool is_steady = true;
    static time_point now() { return time_point{duration{std::clock() * 1'000'000LL / CLOCKS_PER_SEC}}; }
};

/// Runs `work` once to warm up and then `runs` times.
template <class clock = std::chrono::steady_clock, class Work>
timing measure(double pixels, Work&& work, int runs = 9)
{
    work();
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto start = clock::now();
        work();
        times.push_back(std::chrono::duration<double, std::nano>(clock::now() - start).count() / pixels);
    }
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times.front()};
}

/// Prints a line of a table; `reference` is the timing that the ratio refers to (0: none).
inline void print(const std::string& what, const std::string& variant, timing t, double reference_ns = 0)
{
    std::printf("%-36s %-14s %9.2f ns/px (best %8.2f)", what.c_str(), variant.c_str(), t.median_ns, t.best_ns);
    if (reference_ns > 0) std::printf("  ratio %6.2f", t.median_ns / reference_ns);
    std::printf("\n");
    std::fflush(stdout);
}

/// Ends the program when a result is wrong.
inline void check(bool right, const char* what)
{
    if (right) return;
    std::fprintf(stderr, "wrong result: %s\n", what);
    std::exit(1);
}

}  // namespace bench
