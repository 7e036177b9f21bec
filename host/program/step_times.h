#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "host/program/json.h"

namespace zentrix::program {

/// The times that a command's steps take, for --timing.
class step_times
{
  public:
    using clock = std::chrono::steady_clock;
    using seconds = std::chrono::duration<double>;

    /// Times of the same step are added up.
    void add(const std::string& step, seconds time);

    /// Calls `work` and adds its time. Returns its result.
    template <class Work>
    decltype(auto) measure(const std::string& step, Work work)
    {
        const stopwatch running{*this, step};
        return work();
    }

    /// "read 3.2 ms, transform 15.1 ms"
    std::string text() const;
    /// {"read": 0.0032, "transform": 0.0151}, in seconds
    json as_json() const;

  private:
    struct stopwatch
    {
        step_times& to;
        const std::string& step;
        clock::time_point start = clock::now();
        ~stopwatch() { to.add(step, clock::now() - start); }
    };
    std::vector<std::pair<std::string, seconds>> steps_;
};

}  // namespace zentrix::program
