#include "functions/system/pad_size.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace {

using qorv::functions::pad_size;

int multiplicity(std::uint64_t factor, std::uint64_t size)
{
    return size % factor == 0 ? 1 + multiplicity(factor, size / factor) : 0;
}

/// The next product of 2, 3, 5 and 7: a size without such a factor is odd and becomes twice the half of the next number.
std::uint64_t rounded(std::uint64_t size)
{
    if (size < 2) return size;
    for (const std::uint64_t factor : {2, 3, 5, 7})
        if (size % factor == 0) return factor * rounded(size / factor);
    return 2 * rounded((size + 1) / 2);
}

/// The best of all candidates, looked at one by one.
std::uint64_t searched(std::uint32_t n)
{
    std::tuple<int, int, std::uint64_t> best{-1, -1, 0};
    for (std::uint64_t size = n; size <= n + std::uint64_t{n >> 4}; ++size) {
        const std::uint64_t product = rounded(size);
        best = std::max(best, {multiplicity(2, product), multiplicity(3, product), size});
    }
    return rounded(std::get<2>(best));
}

TEST(PadSize, IsTheBestOfAllCandidates)
{
    EXPECT_EQ(pad_size(0), 0u);
    for (std::uint32_t n = 1; n <= 6000; ++n) ASSERT_EQ(pad_size(n), searched(n)) << n;
    // Where 15/16 of a power of two is the last candidate, the sizes with the largest rounding decide.
    constexpr std::uint32_t power = 1u << 16, edge = power / 17 * 15;
    for (std::uint32_t n = edge; n <= edge + 20; ++n) ASSERT_EQ(pad_size(n), searched(n)) << n;
    for (const std::uint32_t n : {power - 1, power, power + 1, 3'000'017u, (1u << 22) - 1})
        ASSERT_EQ(pad_size(n), searched(n)) << n;
}

TEST(PadSize, LargeSizesDoNotOverflow)
{
    EXPECT_EQ(pad_size(100'000'001), 100'663'296u);  // 3 x 2^25
    EXPECT_EQ(pad_size(0xFFFF'FFF0), 1ull << 32);
}

}  // namespace
