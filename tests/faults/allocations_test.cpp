#include "tests/faults/allocations.h"

#include <gmock/gmock.h>

#include "tests/faults/report.h"
#include "tests/faults/walked_call.h"

// Every allocation of a script function fails once, alone and with all later ones.
namespace {

using namespace faults;

TEST(Allocations, AreCountedWhileTheLibraryRuns)
{
    script_host script{options(), watch};
    plan_allocations({});
    const auto picture = whole_numbers(HOST_ELEMENT_FLOAT32, {8, 4});
    EXPECT_EQ(allocations(), 0u) << "the host's own";
    script.call_image("ZXGaussianBlur", {picture, 1.5, integer{3}, script_value{}});
    const auto small = allocations();
    EXPECT_GT(small, 5u) << "the library's";
    script.call_image("ZXGaussianBlur", {picture, 1.5, integer{3}, script_value{}});
    EXPECT_EQ(allocations(), 2 * small);
}

TEST(Allocations, ThatFailLeaveEverythingAsItWas)
{
    std::uint64_t walked = 0;
    const auto calls = typical_calls();
    for (const auto& call : calls)
        for (const bool simd : {false, true}) {
            script_host script{options(), watch};
            script.use_simd(simd);
            walked_call walk{script, call};
            plan_allocations({});
            script.call(call.function, copy_of(call.args));
            const auto most = allocations();
            for (std::uint64_t k = 1; k <= most; ++k)
                for (const bool all_later : all_later_or_not) {
                    SCOPED_TRACE(call.function + ", allocation " + std::to_string(k) +
                                 (all_later ? " and all later" : "") + (simd ? "" : ", without vector instructions"));
                    walk.expect_failing_allocation({k, all_later});
                    ++walked;
                }
        }
    report(count_of(walked, "walks with failing allocations in ") + count_of(calls.size(), "calls"));
}

}  // namespace
