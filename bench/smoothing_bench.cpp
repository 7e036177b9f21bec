#include "bench.h"
#include "functions/smoothing/box_pass.h"
#include "functions/smoothing/box_slice.h"
#include "functions/smoothing/gaussian.h"

#include <complex>

// Box filters and the Gaussian: each variant against the plain one, on 2048 square or a volume. One thread.

namespace {

using namespace qorv;

/// `run(kernel, from, to)` for each variant.
template <class T, class Table, class Run>
void compare(const std::string& what, const Table& table, typename dm::image<T>::extents size, Run run)
{
    const auto count = static_cast<std::size_t>(size[0] * size[1] * size[2]);
    const auto pixels = bench::noise<T>(count, 0, 1000);
    const dm::image<const T> from{pixels.data(), size[0], size[1], size[2]};
    bench::compare_variants<T>(what, double(count), count, table, [&](auto* kernel, T* to) {
        run(kernel, from, dm::image<T>{to, size[0], size[1], size[2]});
    });
}

template <class T>
void boxes(const std::string& type)
{
    for (const std::ptrdiff_t r : {1, 5, 20, 500})
        compare<T>("box r = " + std::to_string(r) + ' ' + type, functions::box_slice_variants<T>(), {2048, 2048, 1},
                   [r](auto* kernel, auto& from, const auto& to) { kernel(from, to, r)(); });
    using functions::axis;
    for (const auto& [name, along] : {std::pair{'x', axis::x}, {'y', axis::y}, {'z', axis::z}}) {
        const typename dm::image<T>::extents volume{512, 512, 16}, plane{2048, 2048, 1};
        compare<T>(std::string{"box along "} + name + " r = 5 " + type, functions::box_pass_variants<T>(),
                   along == axis::z ? volume : plane,
                   [a = along](auto* kernel, auto& from, const auto& to) { kernel(from, to, a, 5)(); });
    }
}

template <class T>
void gaussians(const std::string& type)
{
    for (const double sigma : {2.0, 10.0}) {
        const auto weights = functions::gaussian_weights(sigma, 3, 2048);
        compare<T>("Gaussian sigma " + std::to_string(int(sigma)) + ' ' + type, functions::gaussian_variants<T>(),
                   {2048, 2048, 1}, [&](auto* kernel, auto& from, const auto& to) { kernel(from, to, weights); });
    }
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        boxes<float>("float");
        boxes<double>("double");
        boxes<std::complex<float>>("complex float");
        boxes<std::complex<double>>("complex double");
        gaussians<float>("float");
        gaussians<double>("double");
    });
}
