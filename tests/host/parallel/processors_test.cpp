#include "host/parallel/processors.h"

#include <gtest/gtest.h>

#include <limits>

#include "host/parallel/in_parallel.h"

#ifndef _WIN32
#include <sched.h>
#endif

using namespace zentrix::host;

TEST(Processors, AreLimitedByAPositiveNumber)
{
    constexpr auto none = std::numeric_limits<std::ptrdiff_t>::max();
    for (auto [text, limit] : {std::pair<const char*, std::ptrdiff_t>{"1", 1},
                               {" 12", 12},
                               {"4,2", 4},
                               {"0", none},
                               {"-1", none},
                               {"all", none},
                               {"", none},
                               {nullptr, none}})
        EXPECT_EQ(thread_limit(text), limit) << (text ? text : "not set");
}

#ifndef _WIN32
TEST(Processors, AreThoseThatTheThreadMayUse)
{
    cpu_set_t before, one;
    ASSERT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
    CPU_ZERO(&one);
    for (int i = 0; CPU_COUNT(&one) == 0; ++i)
        if (CPU_ISSET(i, &before)) CPU_SET(i, &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(threads_for(1 << 24), 1);
    sched_setaffinity(0, sizeof before, &before);
}
#endif
