#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

#include "host/estimation/estimate.h"
#include "host/estimation/minimise.h"
#include "host/parallel/in_parallel.h"

namespace zentrix::host {

/// What the parts of a search share: threads, progress, the wish to stop, and the count of evaluations.
class search_run
{
  public:
    /// stop  as estimate_options::stop
    search_run(const estimate_progress& progress, std::ptrdiff_t threads, const lens::optics& start,
               const std::atomic<bool>* stop = nullptr);

    /// The next part of the search takes the progress up to `fraction`.
    void begin(double fraction);
    /// The optics that the progress shows from now on.
    void show(const lens::optics& best) { shown_ = best; }

    /// Calls work(item) for 0 <= item < count on the threads. Reports the progress until the last item is done.
    /// Returns false if the search was stopped.
    /// Throws  the exception of the item with the lowest index; then some items may not have been worked on
    template <class Work>
    bool for_each(std::size_t count, const Work& work)
    {
        std::vector<std::exception_ptr> thrown(count);
        std::atomic<std::size_t> begun{0}, done{0};
        const auto attempt = [&](std::size_t item, const auto& step) {
            try {
                step();
            } catch (const search_stopped&) {
            } catch (...) {
                thrown[item] = std::current_exception();
                stopped_ = true;
            }
        };
        in_parallel(static_cast<std::ptrdiff_t>(count), threads_, [&](std::ptrdiff_t thread, std::ptrdiff_t index) {
            const auto item = static_cast<std::size_t>(index);
            is_caller = thread == 0;
            ++begun;
            attempt(item, [&] {
                if (!stopped_) work(item);
            });
            count_done(done, count);
            if (is_caller && begun == count) attempt(item, [&] { report_until(done, count); });
        });
        is_caller = true;
        for (const auto& one : thrown)
            if (one) std::rethrow_exception(one);
        return !stopped_;
    }

    /// To be called before each evaluation: counts it and reports the progress. Throws  search_stopped
    void evaluated();
    bool was_stopped() const noexcept { return stopped_; }
    std::size_t evaluations() const noexcept { return evaluations_; }

  private:
    using clock = std::chrono::steady_clock;

    void report();
    void count_done(std::atomic<std::size_t>& done, std::size_t count);
    void report_until(const std::atomic<std::size_t>& done, std::size_t count);

    static thread_local bool is_caller;

    const estimate_progress& progress_;
    const std::atomic<bool>* stop_;
    std::ptrdiff_t threads_;
    lens::optics shown_;
    clock::time_point next_report_;
    double from_ = 0, to_ = 0, reported_ = 0;
    std::atomic<double> part_{0};  ///< of the way from from_ to to_
    std::atomic<bool> stopped_{false};
    std::atomic<std::size_t> evaluations_{0};
    std::mutex ending_;
    std::condition_variable all_done_;
};

}  // namespace zentrix::host
