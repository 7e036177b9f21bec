#include <cmath>
#include <complex>
#include <vector>

#include "bench.h"
#include "warp/warp.h"

namespace {

using namespace qorv;

/// A ramp, which linear interpolation reproduces between the pixels, so that any place can be checked.
template <class T>
std::vector<T> ramp(std::ptrdiff_t size)
{
    std::vector<T> pixels;
    for (std::ptrdiff_t y = 0; y < size; ++y)
        for (std::ptrdiff_t x = 0; x < size; ++x)
            pixels.push_back(T(static_cast<typename warp::real_of<T>::type>(x + 2 * y)));
    return pixels;
}

template <class T>
void run(const char* type, std::ptrdiff_t size)
{
    using real = typename warp::real_of<T>::type;
    const auto pixels = ramp<T>(size);
    std::vector<T> result(pixels.size());
    const dm::image<const T> source{pixels.data(), size, size};
    dm::image<T> to{result.data(), size, size};
    const auto count = static_cast<double>(pixels.size());
    const auto middle = static_cast<double>(size / 2);
    const auto right_at = [&](double x, double y) {
        return std::abs(to(size / 2, size / 2) - T(static_cast<real>(x + 2 * y))) < 1e-2;
    };

    const double c = std::cos(0.1), s = std::sin(0.1);
    const auto turn = warp::affine_in_plane(c, -s, 5.5, s, c, -7.25);
    warp::AffineWarp<T>(source, turn, to);
    bench::check(right_at(c * middle - s * middle + 5.5, s * middle + c * middle - 7.25), "affine");
    const auto name = [&](const char* what) { return std::string{what} + (size == 512 ? " 512" : " 2048"); };
    const auto affine = bench::measure(count, [&] { warp::AffineWarp<T>(source, turn, to); });
    bench::print(name("AffineWarp, rotation"), type, affine);

    const std::vector<real> shifts(static_cast<std::size_t>(size), real{0.25});
    const dm::image<const real> rows{shifts.data(), 1, size}, everywhere{shifts.data(), 1};
    warp::LinearWarpX<T>(source, rows, to);
    bench::check(right_at(middle + 0.25, middle), "x");
    bench::print(name("LinearWarpX, a shift for each row"), type,
                 bench::measure(count, [&] { warp::LinearWarpX<T>(source, rows, to); }), affine.median_ns);
    warp::LinearWarpXY<T>(source, everywhere, everywhere, to);
    bench::check(right_at(middle + 0.25, middle + 0.25), "xy");
    bench::print(name("LinearWarpXY, one shift"), type,
                 bench::measure(count, [&] { warp::LinearWarpXY<T>(source, everywhere, everywhere, to); }),
                 affine.median_ns);
}

}  // namespace

int main()
{
    for (const std::ptrdiff_t size : {512, 2048}) {
        run<float>("float", size);
        run<double>("double", size);
        run<std::complex<float>>("complex float", size);
    }
}
