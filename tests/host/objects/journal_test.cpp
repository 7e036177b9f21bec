#include "host/objects/journal.h"

#include <gtest/gtest.h>

namespace {

using namespace zentrix::host;

TEST(Journal, KeepsTheNewestOutputAndTheFirstViolations)
{
    journal records;
    for (std::uint32_t line = 0; line < 5000; ++line) {
        records.add_output({"m", line, std::string(1000, 'x')});
        records.add_violation(std::to_string(line));
    }
    const auto lines = records.output();
    EXPECT_NEAR(static_cast<double>(lines.size()), 960, 40);  // 1 MiB
    EXPECT_EQ(lines.back().type, 4999u);
    EXPECT_EQ(lines.front().type, 5000 - lines.size());
    const auto violations = records.violations();
    EXPECT_EQ(violations.at(999), "999");
    EXPECT_EQ(violations.back(), "and 4000 further violations.");
    records.add_output({"m", 0, std::string(2'000'000, 'y')});
    EXPECT_EQ(records.output().size(), 1u);
}

}  // namespace
