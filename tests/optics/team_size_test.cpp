#include "optics/team_size.h"

#include "optics/shifter.h"

#include <gtest/gtest.h>
#include <omp.h>
#include <algorithm>
#include <complex>
#include <vector>

#if defined(__linux__)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <filesystem>
#include <iterator>
#endif

namespace {

using namespace qorv::optics;

/// Sets the number of threads for one test.
struct thread_setting
{
    explicit thread_setting(int threads) { omp_set_num_threads(threads); }
    ~thread_setting() { omp_set_num_threads(before); }
    int before = omp_get_max_threads();
};

TEST(TeamSize, IsBoundedByTheSettingThePiecesAndTheProcessors)
{
    const int processors = omp_get_num_procs();
    for (const auto& [setting, pieces] :
         {std::pair{1, 1000}, {2, 1000}, {1024, 1}, {1024, 0}, {1024, 2}, {1024, 1000}}) {
        const thread_setting set{setting};
        EXPECT_EQ(team_size(pieces), std::max(1, std::min({setting, pieces, processors}))) << setting << ' ' << pieces;
        EXPECT_EQ(omp_get_max_threads(), setting) << "what scripts set is kept";
    }
}

#if defined(__linux__)
void shift_in_parallel()
{
    std::vector<std::complex<float>> wave(512 * 512);
    shift_half_sse2(wave.data(), wave.data(), 512, 512, 512 * 512);
}

TEST(TeamSize, ShifterStartsNoMoreThreadsThanProcessors)
{
    const thread_setting set{64};
    shift_in_parallel();
    const auto threads = std::distance(std::filesystem::directory_iterator{"/proc/self/task"}, {});
    EXPECT_LE(threads, omp_get_num_procs());
}

TEST(TeamSize, IsOneWhereTheSystemStartsNoThread)
{
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const rlimit none{0, 0};
        // Root has no limit of processes; others count the threads that they have already.
        const bool is_limited = setgid(65534) == 0 && setuid(65534) == 0 && setrlimit(RLIMIT_NPROC, &none) == 0;
        const thread_setting set{8};
        shift_in_parallel();  // the runtime would end the process with 1
        _exit(is_limited ? team_size(8) : 77);
    }
    int status = -1;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 77) GTEST_SKIP() << "needs the right to change the user";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
}

TEST(TeamSize, ShifterWorksInTheChildOfAProcessThatUsedThreads)
{
    const thread_setting set{4};
    shift_in_parallel();
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        alarm(20);  // ends a child that waits for ever
        shift_in_parallel();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(team_size(100), std::min(4, omp_get_num_procs())) << "the parent goes on in parallel";
}
#endif

}  // namespace
