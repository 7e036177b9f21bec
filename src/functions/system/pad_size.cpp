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

/// Moves all factors `factor` from `rest` to the product and returns how many there were.
int take_factors(std::uint64_t factor, std::uint64_t& rest, std::uint64_t& product) noexcept
{
    int count = 0;
    for (; rest % factor == 0; rest /= factor, ++count) product *= factor;
    return count;
}

/// `size` rounded up: what remains beside 2, 3, 5 and 7 is replaced by the next number, again and again.
rounded round_up(std::uint64_t size) noexcept
{
    if (size == 0) return {0, 0, 0};
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

}  // namespace

std::uint64_t pad_size(std::uint32_t n) noexcept
{
    const std::uint64_t first = n, last = first + (n >> 4);
    rounded best = round_up(first);
    for (std::uint64_t candidate = first + 1; candidate <= last; ++candidate) {
        const rounded next = round_up(candidate);
        if (std::tie(next.twos, next.threes) >= std::tie(best.twos, best.threes)) best = next;
    }
    return best.product;
}

}  // namespace qorv::functions
