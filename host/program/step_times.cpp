#include "host/program/step_times.h"

#include <algorithm>
#include <cmath>

#include "host/text/number_text.h"

namespace zentrix::program {

void step_times::add(const std::string& step, seconds time)
{
    const auto known = std::ranges::find(steps_, step, &std::pair<std::string, seconds>::first);
    if (known == steps_.end())
        steps_.emplace_back(step, time);
    else
        known->second += time;
}

std::string step_times::text() const
{
    std::string text;
    for (const auto& [step, time] : steps_)
        text +=
            (text.empty() ? "" : ", ") + step + " " + host::number_text(std::round(time.count() * 1e4) / 10) + " ms";
    return text;
}

json step_times::as_json() const
{
    json times;
    for (const auto& [step, time] : steps_) times[step] = time.count();
    return times;
}

}  // namespace zentrix::program
