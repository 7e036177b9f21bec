#include "optics/team_size.h"

#include <omp.h>
#include <unistd.h>
#include <algorithm>
#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace qorv::optics {

namespace {

/// The process in which the parallel runtime has started threads; 0 before. Children of fork inherit the number.
std::atomic<decltype(getpid())> process_of_threads{0};

bool may_have_threads() noexcept
{
    const auto own = getpid();
    decltype(getpid()) recorded = 0;
    return process_of_threads.compare_exchange_strong(recorded, own) || recorded == own;
}

/// Starts threads that run at the same time, at most `wanted`, and ends them. Returns how many were started.
int try_threads(int wanted) noexcept
{
    std::latch end{1};
    std::vector<std::thread> started;
    try {
        started.reserve(static_cast<std::size_t>(wanted));
        while (static_cast<int>(started.size()) < wanted) started.emplace_back([&end] { end.wait(); });
    } catch (const std::exception&) {  // no memory, or the limit of processes
    }
    end.count_down();
    for (std::thread& thread : started) thread.join();
    return static_cast<int>(started.size());
}

/// `size`, or less where the system does not start the threads that the next team needs in addition to the last one's.
int startable_team(int size) noexcept
{
    static std::atomic<int> last{
        1};  // the runtime keeps the threads of the last team and ends those that it does not need
    const int kept = last;
    last = size > kept ? kept + try_threads(size - kept) : size;
    return last;
}

}  // namespace

int team_size(std::ptrdiff_t pieces) noexcept
{
    const std::ptrdiff_t most = std::min(omp_get_max_threads(), omp_get_num_procs());
    const int size = static_cast<int>(std::clamp<std::ptrdiff_t>(pieces, 1, std::max<std::ptrdiff_t>(most, 1)));
    return size > 1 && may_have_threads() ? startable_team(size) : 1;
}

}  // namespace qorv::optics
