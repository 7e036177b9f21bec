#include "bench.h"
#include "warp/warp.h"

#include <algorithm>
#include <cmath>
#include <complex>

// Warps of 2048 square against a bilinear loop without checks at the edges. One thread.

namespace {

using namespace qorv;
constexpr std::ptrdiff_t n = 2048;

/// Shifts by a quarter pixel along both axes; the last row and column are left alone.
template <class T>
void quarter_pixel_loop(const std::vector<T>& from, std::vector<T>& to)
{
    using real = typename warp::real_of<T>::type;
    const real far = real(0.25), near = real(0.75);
    for (std::ptrdiff_t y = 0; y + 1 < n; ++y)
        for (std::ptrdiff_t x = 0; x + 1 < n; ++x) {
            const T* const p = from.data() + y * n + x;
            to[static_cast<std::size_t>(y * n + x)] =
                near * (near * p[0] + far * p[1]) + far * (near * p[n] + far * p[n + 1]);
        }
}

template <class T>
void compare(const std::string& type)
{
    using real = typename warp::real_of<T>::type;
    std::vector<T> pixels, loop(n * n), result(n * n);
    for (std::ptrdiff_t i = 0; i < n * n; ++i) pixels.push_back(T(static_cast<real>(i % n + 2 * (i / n))));  // a ramp
    const dm::image<const T> source{pixels.data(), n, n};
    dm::image<T> to{result.data(), n, n};
    const auto middle_is = [&](double x, double y) {  // linear interpolation reproduces the ramp
        return [&to, wanted = T(static_cast<real>(x + 2 * y))] { return std::abs(to(n / 2, n / 2) - wanted) < 1e-2; };
    };
    const auto m = double(n / 2);
    const double c = std::cos(0.1), s = std::sin(0.1);
    const real quarter = real(0.25);
    const std::vector<real> shifts(n, quarter);
    const dm::image<const real> rows{shifts.data(), 1, n}, everywhere{&quarter, 1};

    bench::comparison compared{"warp " + type, double(n) * n};
    compared.add(
        "bilinear loop", [&] { quarter_pixel_loop(pixels, loop); }, [] { return true; });
    compared.add(
        "LinearWarpXY, one shift", [&] { warp::LinearWarpXY<T>(source, everywhere, everywhere, to); },
        [&] { return middle_is(m + 0.25, m + 0.25)() && to(5, 7) == loop[7 * n + 5]; });
    compared.add(
        "LinearWarpX, shift per row", [&] { warp::LinearWarpX<T>(source, rows, to); }, middle_is(m + 0.25, m));
    compared.add(
        "AffineWarp, rotation",
        [&] { warp::AffineWarp<T>(source, warp::affine_in_plane(c, -s, 5.5, s, c, -7.25), to); },
        middle_is(c * m - s * m + 5.5, s * m + c * m - 7.25));
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        compare<float>("float");
        compare<double>("double");
        compare<std::complex<float>>("complex float");
    });
}
