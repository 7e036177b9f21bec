#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

#include "tests/faults/report.h"
#include "tests/faults/walked_call.h"

// Every request that a script function makes of the host fails once, alone and together with a later one.
namespace {

using namespace faults;

#ifndef _WIN32
/// ZXShellExec finds no program to start.
const int without_programs = setenv("PATH", "", 1);
#endif

TEST(Faults, HaveARowForEveryPrototype)
{
    script_host script{options()};
    std::set<std::string> missing;
    for (const std::string& prototype : script.host().functions().prototypes(origin::library))
        missing.insert(prototype);
    for (const auto& [function, args, text] : typical_calls())
        missing.erase(script.host().functions().resolve(function, args)->signature().text);
    EXPECT_THAT(missing, testing::IsEmpty());
}

TEST(Faults, EveryRequestThatFailsLeavesEverythingAsItWas)
{
    std::map<std::string, std::uint64_t> requests;  // the most of a call of each prototype
    std::uint64_t walked = 0;
    for (const auto& call : typical_calls()) {
        script_host script{options()};
        walked_call walk{script, call};
        for (std::uint64_t k = 1; k <= walk.requests(); ++k) walk.expect_failure({{fault_point::any, k}});
        auto& most = requests[walk.prototype()];
        most = std::max(most, walk.requests());
        walked += walk.requests();
    }
    std::uint64_t sum = 0, asking = 0;
    for (const auto& [prototype, most] : requests) sum += most, asking += most > 0;
    report(count_of(requests.size(), "prototypes, ") + count_of(asking, "with requests; ") +
           count_of(sum, "requests of one call of each; ") + count_of(walked, "failed requests of all calls"));
}

TEST(Faults, EveryLookUpThatFailsOnAFreshHostIsRepeatedByTheNextCall)
{
    std::uint64_t walked = 0;
    for (const auto& call : typical_calls()) {
        std::uint64_t look_ups = 0;
        std::string result;
        {
            script_host script{options()};
            script.host().faults().clear();
            const auto args = copy_of(call.args);
            const auto answer = script.call(call.function, args);
            result = contents({answer}) + contents(args);
            look_ups = script.host().faults().count(fault_point::find_function);
        }
        for (std::uint64_t k = 1; k <= look_ups; ++k, ++walked) {
            SCOPED_TRACE(call.function + ", look-up " + std::to_string(k));
            script_host script{options()};
            const auto args = copy_of(call.args);
            const auto before = contents(args);
            script.host().faults().plan({fault_point::find_function, k});
            const auto text = script.failure(call.function, args);
            const auto failed = script.host().faults().failed();
            ASSERT_EQ(failed.size(), 1u);
            script.host().faults().clear();
            EXPECT_EQ(text, "A function of the following prototype can not be found:\n\n" + failed[0].prototype);
            EXPECT_THAT(script.host().report().locks, testing::IsEmpty());
            EXPECT_EQ(contents(args), before);
            const auto answer = script.call(call.function, args);
            EXPECT_EQ(contents({answer}) + contents(args), result);
        }
    }
    report(count_of(walked, "failed look-ups on fresh hosts"));
}

TEST(Faults, EveryPairOfFailingRequestsLeavesEverythingAsItWas)
{
    std::uint64_t walked = 0;
    const auto calls = typical_calls();
    for (const auto& call : calls) {
        script_host script{options()};
        walked_call walk{script, call};
        for (std::uint64_t first = 1; first <= walk.requests(); ++first) {
            const auto made = walk.expect_failure({{fault_point::any, first}});
            for (auto second = first + 1; second <= made; ++second, ++walked)
                walk.expect_failure({{fault_point::any, first}, {fault_point::any, second}});
        }
    }
    report(count_of(walked, "pairs of requests of ") + count_of(calls.size(), "calls"));
}

}  // namespace
