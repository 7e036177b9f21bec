#include "host/engine/faults.h"

#include <utility>

namespace zentrix::host {

void fault_plan::plan(fault planned) { plan(std::vector{std::move(planned)}); }

void fault_plan::plan(std::vector<fault> planned)
{
    clear();
    const std::lock_guard guard{access_};
    for (auto& one : planned) planned_.push_back({std::move(one)});
}

void fault_plan::clear()
{
    const std::lock_guard guard{access_};
    planned_.clear();
    counts_ = {};
    failed_.clear();
}

std::uint64_t fault_plan::count(fault_point point) const
{
    const std::lock_guard guard{access_};
    return counts_[static_cast<std::size_t>(point)];
}

std::vector<failed_request> fault_plan::failed() const
{
    const std::lock_guard guard{access_};
    return failed_;
}

std::string fault_plan::text() const
{
    const std::lock_guard guard{access_};
    return text_;
}

bool fault_plan::should_fail(fault_point point, std::string_view prototype)
{
    const std::lock_guard guard{access_};
    ++counts_[static_cast<std::size_t>(point)];
    ++counts_[static_cast<std::size_t>(fault_point::any)];
    bool fails = false;
    for (auto& [chosen, matching] : planned_) {
        if (chosen.point != point && chosen.point != fault_point::any) continue;
        if (!chosen.prototype.empty() && chosen.prototype != prototype) continue;
        ++matching;
        if (chosen.number != 0 && chosen.number != matching) continue;
        fails = true;
        text_ = chosen.text;
    }
    if (fails) failed_.push_back({point, std::string{prototype}});
    return fails;
}

}  // namespace zentrix::host
