#include "host/estimation/search_run.h"

#include <algorithm>

namespace zentrix::host {

thread_local bool search_run::is_caller = true;

search_run::search_run(const estimate_progress& progress, std::ptrdiff_t threads, const lens::optics& start)
    : progress_{progress}, threads_{threads > 0 ? threads : processors()}, shown_{start}, next_report_{clock::now()}
{}

void search_run::begin(double fraction)
{
    from_ = to_;
    to_ = fraction;
    part_ = 0;
}

void search_run::evaluated()
{
    ++evaluations_;
    if (stopped_) throw search_stopped{};
    if (!is_caller || !progress_ || clock::now() < next_report_) return;
    reported_ = std::max(reported_, from_ + (to_ - from_) * part_);  // a part may have several loops, in any order
    if (!progress_(reported_, shown_)) {
        stopped_ = true;
        throw search_stopped{};
    }
    next_report_ = clock::now() + std::chrono::milliseconds{100};
}

}  // namespace zentrix::host
