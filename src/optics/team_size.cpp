#include "optics/team_size.h"

#include <omp.h>
#include <unistd.h>
#include <algorithm>
#include <atomic>

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

}  // namespace

int team_size(std::ptrdiff_t pieces) noexcept
{
    const std::ptrdiff_t most = std::min(omp_get_max_threads(), omp_get_num_procs());
    const int size = static_cast<int>(std::clamp<std::ptrdiff_t>(pieces, 1, std::max<std::ptrdiff_t>(most, 1)));
    return size > 1 && may_have_threads() ? size : 1;
}

}  // namespace qorv::optics
