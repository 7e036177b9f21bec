#include "bench.h"
#include "optics/shifter.h"

#include <omp.h>

// The variants of the shifter against memcpy of the same bytes, in one thread and in two.

namespace {

using namespace qorv;

void compare(int n, int threads)
{
    using pixel = std::complex<float>;
    const auto count = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
    const auto parts = bench::noise<float>(2 * count, -1, 1);
    const auto* const source = reinterpret_cast<const pixel*>(parts.data());
    std::vector<pixel> result(count), plain(count);
    const auto room = static_cast<std::ptrdiff_t>(count);
    optics::shift_half_plain(source, plain.data(), n, n, room);
    omp_set_num_threads(threads);

    bench::comparison compared{"shifter " + std::to_string(n) + ", threads " + std::to_string(threads), double(count),
                               bench::clock::wall};
    compared.add(
        "memcpy", [&] { std::memcpy(static_cast<void*>(result.data()), source, count * sizeof(pixel)); },
        [] { return true; });
    for (const auto& row : dm::runnable(optics::shifter_variants()))
        compared.add(
            row.name, [&, row] { row.function(source, result.data(), n, n, room); }, [&] { return result == plain; });
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        for (const int n : {64, 256, 1024, 4096})
            for (const int threads : {1, 2}) compare(n, threads);
    });
}
