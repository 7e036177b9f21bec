#include "host/objects/journal.h"

#include <gtest/gtest.h>

namespace {

using namespace zentrix::host;

TEST(Journal, KeepsTheNewestOutputAndTheFirstViolationsInBoundedMemory)
{
    journal records;
    std::size_t heard = 0;
    records.listening.output = [&](const output_record&) { ++heard; };
    for (std::uint32_t line = 0; line < 5000; ++line) {
        records.add_output({"m", line, std::string(1000, 'x')});
        records.add_violation(std::to_string(line));
    }
    const auto lines = records.output();
    std::size_t bytes = 0;
    for (const auto& line : lines) bytes += line.text.size();
    EXPECT_GT(bytes, 900'000u);
    EXPECT_LE(bytes, std::size_t{1} << 20);
    EXPECT_EQ(lines.back().type, 4999u);
    EXPECT_EQ(lines.front().type, 5000 - lines.size());
    EXPECT_EQ(heard, 5000u);
    EXPECT_EQ(records.violations().size(), 1001u);
    EXPECT_EQ(records.violations()[999], "999");
    EXPECT_EQ(records.violations().back(), "and 4000 further violations.");
    records.add_output({"m", 0, std::string(2'000'000, 'y')});
    EXPECT_EQ(records.output().size(), 1u);
}

}  // namespace
