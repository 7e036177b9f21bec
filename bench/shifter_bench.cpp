#include "bench.h"
#include "optics/shifter.h"

#include <omp.h>
#include <cstring>
#include <random>

/// The shifter beside memcpy of the same bytes.
namespace {

using namespace qorv;

template <class T>
void compare(const char* name, optics::shift_kernel<T>* kernel, int n, int threads)
{
    using pixel = std::complex<T>;
    const std::ptrdiff_t count = std::ptrdiff_t{n} * n;
    std::vector<pixel> source(count), wanted(count), result(count);
    std::mt19937 random{1};
    for (auto& value : source) value = {T(random() % 1000), T(random() % 1000)};
    for (std::ptrdiff_t i = 0; i < count; ++i) wanted[i] = std::conj(source[i]) * ((i % n + i / n) % 2 ? T(-1) : T(1));
    omp_set_num_threads(threads);
    const auto shift = [&] { kernel(source.data(), result.data(), n, n, count); };
    shift();
    bench::check(result == wanted, name);

    const int repeats = std::max<int>(1, (1 << 22) / static_cast<int>(count));
    const auto repeated = [&](auto&& work) {
        return bench::measure(
            static_cast<double>(count) * repeats,
            [&] {
                for (int i = 0; i < repeats; ++i) work();
            },
            25);
    };
    const auto copy =
        repeated([&] { std::memcpy(static_cast<void*>(result.data()), source.data(), count * sizeof(pixel)); });
    const auto shifted = repeated(shift);
    const std::string what = "shifter " + std::to_string(n) + " square, " + std::to_string(threads) + " thread(s)";
    bench::print(what, "memcpy", copy);
    bench::print(what, name, shifted, copy.median_ns);
}

}  // namespace

int main()
{
    dm::read_processor_features();
    for (const int n : {64, 256, 512, 1024, 2048, 4096})
        for (const int threads : {1, 2})
            for (const auto& row : dm::runnable(optics::shifter_variants))
                if (threads == 1 || row.needs != dm::cpu::none) compare<float>(row.name, row.function, n, threads);
    for (const int n : {256, 2048}) compare<double>("plain, double", optics::shift_half_plain<double>, n, 1);
}
