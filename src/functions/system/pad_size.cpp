#include "functions/system/pad_size.h"

#include <tuple>

namespace qorv::functions {
namespace {

struct rounded
{
    std::uint64_t product = 1;
    int twos = 0;
    int threes = 0;
};

/// Moves all factors `factor` from `rest` to `product` and returns their number.
int take_factors(std::uint64_t factor, std::uint64_t& rest, std::uint64_t& product) noexcept
{
    int count = 0;
    for (; rest % factor == 0; rest /= factor, ++count) product *= factor;
    return count;
}

/// Rounds `size` up to a product of 2, 3, 5 and 7: the cofactor that has none of these factors is increased by 1, and
/// the factors are divided out again, until the cofactor is 1.
rounded round_up(std::uint64_t size) noexcept
{
    rounded result;
    for (std::uint64_t rest = size;;) {
        result.twos += take_factors(2, rest, result.product);
        result.threes += take_factors(3, rest, result.product);
        take_factors(5, rest, result.product);
        take_factors(7, rest, result.product);
        if (rest == 1) return result;
        ++rest;
    }
}

/// Candidates looked at for each power of two, from the largest down. With 8 the result is that of the search through all
/// candidates for every n up to 2^23.
constexpr std::uint64_t most_multiples = 64;

}  // namespace

std::uint64_t pad_size(std::uint32_t n) noexcept
{
    if (n == 0) return 0;
    // The best candidate has many factors of two. An odd multiple of 2^k is better than all multiples of 2^(k+1) only if
    // no such multiple of the same rounded size fits below the last candidate, that is, close to it.
    const std::uint64_t first = n, last = first + (n >> 4);
    std::tuple<int, int, std::uint64_t> best{-1, -1, 0};
    std::uint64_t best_product = 0;
    for (int shift = 0;; ++shift) {
        const std::uint64_t top = last >> shift, bottom = ((first - 1) >> shift) + 1;
        const bool has_all = top - bottom < most_multiples;
        for (std::uint64_t multiple = has_all ? bottom : top - most_multiples + 1; multiple <= top; ++multiple) {
            const rounded size = round_up(multiple);
            const std::tuple rank{size.twos + shift, size.threes, multiple << shift};
            if (rank <= best) continue;
            best = rank;
            best_product = size.product << shift;
        }
        if (has_all) return best_product;
    }
}

}  // namespace qorv::functions
