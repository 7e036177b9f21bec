#include "bench.h"
#include "functions/rank/extreme_filter.h"
#include "functions/rank/median_filter.h"
#include "functions/rank/median_z.h"
#include "functions/rank/nth_element.h"

// Maximum, median and selection on float images: each variant against the plain one. One thread.

namespace {

using namespace qorv;
using namespace qorv::functions;

void run()
{
    const auto pixels = bench::noise<float>(64 * 512 * 512, 900, 1100);  // a stack of planes
    const auto plane = [&](std::ptrdiff_t n) { return dm::image<const float>{pixels.data(), n, n}; };
    const auto filter = [&](const std::string& what, std::ptrdiff_t n, std::ptrdiff_t radius, const auto table,
                            auto call) {
        const auto count = static_cast<std::size_t>(n * n);
        bench::compare_variants<float>(what + ' ' + std::to_string(n) + ", radius " + std::to_string(radius),
                                       double(count), count, table, [&](auto* kernel, float* to) {
                                           call(kernel, plane(n), dm::image<float>{to, n, n});
                                       });
    };
    for (const std::ptrdiff_t radius : {1, 5, 20})
        filter("maximum", 2048, radius, extreme_variants<float>(),
               [radius](auto* kernel, auto from, auto to) { kernel(from, extreme::maximum, radius, to); });
    for (const std::ptrdiff_t radius : {1, 2, 3, 5, 20})
        filter("median", radius < 5 ? 2048 : 512, radius, median_variants<float>(),
               [radius](auto* kernel, auto from, auto to) { kernel(from, radius, padding::none, to); });
    bench::compare_variants<float>("median of 2048 square", 2048.0 * 2048, 2, rank_variants<float>(),
                                   [&](auto* kernel, float* to) {
                                       const auto found = kernel(plane(2048), 2048 * 2048 / 2, neighbour::before);
                                       to[0] = found.before;
                                       to[1] = found.at;
                                   });
    bench::compare_variants<float>(
        "median along z, 64 of 512", double(pixels.size()), 512 * 512, median_z_variants<float>(),
        [&](auto* kernel, float* to) {
            kernel(dm::image<const float>{pixels.data(), 512, 512, 64}, dm::image<float>{to, 512, 512});
        });
}

}  // namespace

int main(int argc, char** argv) { return bench::run(argc, argv, run); }
