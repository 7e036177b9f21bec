#include "bench.h"
#include "functions/smoothing/gaussian.h"
#include "functions/smoothing/moving_average.h"

#include <cstring>
#include <random>
#include <string>

/// Box filters and the Gaussian, each variant compared with the plain one; 2048 square or a volume, one thread.
namespace {

using namespace qorv;

template <class T>
struct pair_of_images
{
    std::vector<T> from, to, expected;
    explicit pair_of_images(std::size_t count) : from(count), to(count), expected(count)
    {
        std::mt19937 random{1};
        for (auto& v : from) v = static_cast<T>(static_cast<double>(random() % 100000) / 100);
    }
};

/// `run(kernel, from, to)` for every row of `table`; the last row is the plain variant.
template <class T, class Kernel, class Run>
void compare(const std::string& what, dm::variants<Kernel> table, dm::image<float>::extents size, Run run)
{
    pair_of_images<T> data(static_cast<std::size_t>(size[0] * size[1] * size[2]));
    const auto view = [&](auto& pixels) { return dm::image<T>{pixels.data(), size[0], size[1], size[2]}; };
    const dm::image<const T> from = view(data.from);
    run(table.back().function, from, view(data.expected));
    const auto count = static_cast<double>(data.from.size());
    const auto time = [&](Kernel* kernel, int runs) {
        return bench::measure<bench::processor_clock>(
            count, [&] { run(kernel, from, view(data.to)); }, runs);
    };
    const auto plain = time(table.back().function, 5);
    for (const auto& row : dm::runnable(table)) {
        const auto taken = row.needs == dm::cpu::none ? plain : time(row.function, 15);
        bench::check(
            std::memcmp(static_cast<void*>(data.to.data()), data.expected.data(), data.to.size() * sizeof(T)) == 0,
            what.c_str());
        bench::print(what, row.name, taken, plain.median_ns);
    }
}

template <class T>
void boxes(const std::string& type, std::ptrdiff_t n)
{
    for (const std::ptrdiff_t r : {1, 5, 20, 500})
        compare<T>("box mean r = " + std::to_string(r) + " " + type, functions::box_slice_variants<T>(), {n, n, 1},
                   [r](auto* kernel, auto& from, const auto& to) { kernel(from, to, r); });
    for (const auto& [name, along] : {std::pair{"x", functions::axis::x}, {"y", functions::axis::y}})
        for (const std::ptrdiff_t r : {5, 20})
            compare<T>(std::string("box ") + name + " r = " + std::to_string(r) + " " + type,
                       functions::box_pass_variants<T>(), {n, n, 1},
                       [r, a = along](auto* kernel, auto& from, const auto& to) { kernel(from, to, a, r); });
    compare<T>("box z r = 5 " + type, functions::box_pass_variants<T>(), {512, 512, 64 * n * n / 2048 / 2048},
               [](auto* kernel, auto& from, const auto& to) { kernel(from, to, functions::axis::z, 5); });
}

template <class T>
void gaussians(const std::string& type)
{
    for (const auto& [sigma, order] : {std::pair{2.0, 3}, {10.0, 3}}) {
        const auto weights = functions::gaussian_weights(sigma, order, 2048);
        compare<T>("Gaussian sigma " + std::to_string(int(sigma)) + " order 3 " + type,
                   functions::gaussian_variants<T>(), {2048, 2048, 1},
                   [&](auto* kernel, auto& from, const auto& to) { kernel(from, to, weights); });
    }
}

}  // namespace

int main()
{
    dm::read_processor_features();
    boxes<float>("float", 2048);
    boxes<double>("double", 2048);
    boxes<std::complex<float>>("complex float", 2048);
    boxes<std::complex<double>>("complex double", 1024);
    gaussians<float>("float");
    gaussians<double>("double");
}
