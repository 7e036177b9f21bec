#include "host/engine/faults.h"

#include <utility>

namespace zentrix::host {

void fault_plan::plan(fault planned)
{
    clear();
    planned_ = std::move(planned);
}

void fault_plan::clear()
{
    planned_.reset();
    counts_ = {};
    matching_ = 0;
    fired_ = 0;
}

bool fault_plan::should_fail(fault_point point, std::string_view prototype)
{
    ++counts_[static_cast<std::size_t>(point)];
    if (!planned_ || planned_->point != point) return false;
    if (!planned_->prototype.empty() && planned_->prototype != prototype) return false;
    ++matching_;
    if (planned_->number != 0 && planned_->number != matching_) return false;
    ++fired_;
    return true;
}

}  // namespace zentrix::host
