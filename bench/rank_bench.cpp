#include "bench.h"
#include "functions/rank/extreme_filter.h"
#include "functions/rank/median_filter.h"
#include "functions/rank/median_z.h"
#include "functions/rank/nth_element.h"

#include <cstring>
#include <random>

// Maximum, median and selection, each variant against the plain form, whose result it must have to the bit.

using namespace qorv;
using namespace qorv::functions;

namespace {

std::vector<float> noise(std::ptrdiff_t count)
{
    std::mt19937 random{1};
    std::normal_distribution<float> normal{1000.0f, 30.0f};
    std::vector<float> pixels(static_cast<std::size_t>(count));
    for (float& p : pixels) p = normal(random);
    return pixels;
}

bool same(const std::vector<float>& a, const std::vector<float>& b)
{
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

/// Times run(kernel, result) of every variant; `slow_runs` of the plain one.
template <class Table, class Run>
void compare(const std::string& what, const Table& table, std::ptrdiff_t pixels, std::size_t results, int slow_runs,
             Run&& run)
{
    const auto rows = dm::runnable(table);
    std::vector<float> wanted(results);
    std::vector<float> got(results);
    const auto& plain = rows.back();
    const auto plain_time = bench::measure(
        double(pixels), [&] { run(plain.function, wanted); }, slow_runs);
    for (const auto& row : rows) {
        if (row.function == plain.function) continue;
        run(row.function, got);
        bench::check(same(got, wanted), (what + ' ' + row.name).c_str());
        const auto time = bench::measure(double(pixels), [&] { run(row.function, got); });
        bench::print(what, row.name, time, plain_time.median_ns);
    }
    bench::print(what, plain.name, plain_time);
}

}  // namespace

int main()
{
    dm::read_processor_features();
    constexpr std::ptrdiff_t side = 2048;
    constexpr std::ptrdiff_t small = 512;       // for plain forms that take long
    const auto pixels = noise(64 * 512 * 512);  // a stack, or a plane out of it
    const auto plane = [&](std::ptrdiff_t n) { return dm::image<const float>{pixels.data(), n, n}; };
    const auto into = [](std::vector<float>& to, std::ptrdiff_t n) { return dm::image<float>{to.data(), n, n}; };
    const auto title = [](const char* what, std::ptrdiff_t n, std::ptrdiff_t radius) {
        return what + std::string(" ") + std::to_string(n) + ", radius " + std::to_string(radius);
    };

    for (std::ptrdiff_t radius : {1, 5, 20})
        compare(title("maximum", side, radius), extreme_variants<float>::table, side * side, side * side, 1,
                [&](auto* kernel, auto& to) { kernel(plane(side), extreme::maximum, radius, into(to, side)); });
    for (std::ptrdiff_t n : {small, side})
        for (std::ptrdiff_t radius : {1, 2, 3, 5, 20})
            if (n == side ? radius < 5 : true)
                compare(title("median", n, radius), median_variants<float>::table, n * n, std::size_t(n * n), 1,
                        [&](auto* kernel, auto& to) { kernel(plane(n), radius, padding::none, into(to, n)); });
    compare("median of an image of 2048", rank_variants<float>::table, side * side, 2, 3, [&](auto* kernel, auto& to) {
        const auto found = kernel(plane(side), side * side / 2, neighbour::before);
        to = {found.before, found.at};
    });
    const dm::image<const float> stack{pixels.data(), 512, 512, 64};
    compare("median along z, 64 planes of 512", median_z_variants<float>::table, 64 * 512 * 512, 512 * 512, 3,
            [&](auto* kernel, auto& to) { kernel(stack, into(to, 512)); });
}
