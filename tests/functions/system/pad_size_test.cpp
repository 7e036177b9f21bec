#include "functions/system/pad_size.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

namespace {

using qorv::functions::pad_size;

/// How often `factor` divides `size`.
int multiplicity(std::uint64_t factor, std::uint64_t size)
{
    return size % factor == 0 ? 1 + multiplicity(factor, size / factor) : 0;
}

/// Every size rounded up to a product of 2, 3, 5 and 7, each from a smaller one: a size with such a factor from the other
/// factor, any other size is odd and becomes the next number, twice its half.
std::vector<std::uint64_t> rounded_sizes(std::uint64_t last)
{
    std::vector<std::uint64_t> rounded{0, 1};
    for (std::uint64_t size = 2; size <= last; ++size) {
        std::uint64_t up = 2 * rounded[(size + 1) / 2];
        for (const std::uint64_t factor : {2, 3, 5, 7})
            if (size % factor == 0) up = factor * rounded[size / factor];
        rounded.push_back(up);
    }
    return rounded;
}

TEST(pad_size, is_the_best_of_all_candidates_for_every_size_of_an_image)
{
    constexpr std::uint32_t last = 20000;
    const auto rounded = rounded_sizes(last + last / 16);
    std::vector<std::tuple<int, int, std::uint64_t>> ranks{{}};
    for (std::uint64_t size = 1; size < rounded.size(); ++size)
        ranks.emplace_back(multiplicity(2, rounded[size]), multiplicity(3, rounded[size]), size);
    for (std::uint32_t n = 1; n <= last; ++n) {
        auto best = ranks[n];
        for (std::uint32_t size = n; size <= n + n / 16; ++size) best = std::max(best, ranks[size]);
        ASSERT_EQ(pad_size(n), rounded[std::get<2>(best)]) << n;
    }
}

TEST(pad_size, large_sizes_do_not_overflow)
{
    EXPECT_EQ(pad_size((1u << 24) - 1), 1u << 24);
    EXPECT_EQ(pad_size(100'000'001), 100'663'296u);  // 3 x 2^25
}

}  // namespace
