#include "host/estimation/search_run.h"

#include <algorithm>

namespace zentrix::host {

thread_local bool search_run::is_caller = true;

search_run::search_run(const estimate_progress& progress, std::ptrdiff_t threads, const lens::optics& start,
                       const std::atomic<bool>* stop)
    : progress_{progress},
      stop_{stop},
      threads_{threads > 0 ? threads : processors()},
      shown_{start},
      next_report_{clock::now()}
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
    if (stop_ && *stop_) stopped_ = true;
    if (stopped_) throw search_stopped{};
    if (is_caller) report();
}

void search_run::report()
{
    if (!progress_ || clock::now() < next_report_) return;
    reported_ = std::max(reported_, from_ + (to_ - from_) * part_);  // a part may have several loops, in any order
    if (!progress_(reported_, shown_)) {
        stopped_ = true;
        throw search_stopped{};
    }
    next_report_ = clock::now() + std::chrono::milliseconds{100};
}

void search_run::count_done(std::atomic<std::size_t>& done, std::size_t count)
{
    part_ = static_cast<double>(done + 1) / static_cast<double>(count);
    const std::scoped_lock lock{ending_};
    if (++done == count) all_done_.notify_all();
}

/// For the caller's thread when it has no item left: the callback can still stop the search.
void search_run::report_until(const std::atomic<std::size_t>& done, std::size_t count)
{
    if (!progress_) return;
    std::unique_lock lock{ending_};
    while (!stopped_ && !all_done_.wait_until(lock, next_report_, [&] { return done == count; })) {
        lock.unlock();
        report();
        lock.lock();
    }
}

}  // namespace zentrix::host
