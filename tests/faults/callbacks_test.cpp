#include <gmock/gmock.h>

#include "tests/faults/misbehaving_host.h"
#include "tests/faults/report.h"
#include "tests/faults/walked_call.h"

// What the host calls for the library throws, refuses without a reason, or gives null: once at each place of each
// script function.
namespace {

using namespace faults;

TEST(Callbacks, ThatThrowRefuseOrGiveNullLeaveEverythingAsItWas)
{
    const std::pair<misbehaviour, std::string> all[] = {
        {misbehaviour::throws_number, "An unknown error occurred in the host."},
        {misbehaviour::throws_bad_alloc, "std::bad_alloc"},
        {misbehaviour::refuses, "A call of the host failed."},
        {misbehaviour::gives_null, ""}};
    std::uint64_t walked = 0;
    const auto calls = typical_calls();
    for (const auto& one : calls) {
        script_host script{options(), watch_calls};
        walked_call walk{script, one};
        plan_misbehaviour({}, 0);
        script.call(one.function, copy_of(one.args));
        const auto most = watched_calls();
        for (const auto& [how, text] : all)
            for (std::uint64_t k = 1; k <= most; ++k, ++walked) {
                SCOPED_TRACE("misbehaviour " + std::to_string(static_cast<int>(how)) + " of call " + std::to_string(k));
                const auto found = walk.expect_unharmed([&] { plan_misbehaviour(how, k); }, end_misbehaviour);
                if (how != misbehaviour::gives_null && found != one.other_text) {
                    EXPECT_EQ(found, text);
                }
            }
    }
    report(count_of(walked, "calls of the host that throw, refuse or give null in ") + count_of(calls.size(), "calls"));
}

TEST(Callbacks, OfTheProgramMayThrow)
{
    engine_options throwing = options();
    throwing.open_image = [](const std::string&) -> image_ref { throw 1; };
    throwing.interrupted = []() -> bool { throw 1; };
    throwing.file_exists = [](const std::string&) -> bool { throw std::bad_alloc{}; };
    throwing.listening.error = [](const error_record&) { throw 1; };
    script_host script{throwing};
    EXPECT_EQ(script.failure("ZXOpenImage", {"a file", integer{8}, integer{4}, integer{1}, integer{-1}}),
              "An unknown error occurred in the host.");
    const auto large = whole_numbers(HOST_ELEMENT_FLOAT32, {2000, 2000});
    EXPECT_TRUE(script.call_image("ZXMedianFilter", {large, integer{5}, script_value{}, integer{0}}));
}

}  // namespace
