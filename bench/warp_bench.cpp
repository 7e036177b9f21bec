#include <cmath>
#include <complex>
#include <cstdio>
#include <string>
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

/// The rotation of `run` by SciPy, in a Python of its own: ns per pixel and the element in the middle; zero times where
/// there is no SciPy.
struct scipy_result
{
    bench::timing time{};
    double middle = 0;
};
scipy_result scipy_rotation(const char* numpy_type, std::ptrdiff_t size)
{
    static const char script[] =
        "import sys, time\n"
        "try:\n"
        "    import numpy as np\n"
        "    from scipy import ndimage\n"
        "except ImportError:\n"
        "    sys.exit()\n"
        "size = int(sys.argv[1])\n"
        "y, x = np.indices((size, size))\n"
        "image = (x + 2 * y).astype(sys.argv[2])\n"
        "c, s = np.cos(0.1), np.sin(0.1)\n"
        "out, times = np.empty_like(image), []\n"
        "for _ in range(6):\n"
        "    start = time.perf_counter()\n"
        "    ndimage.affine_transform(image, [[c, s], [-s, c]], [-7.25, 5.5], output=out, order=1)\n"
        "    times.append((time.perf_counter() - start) * 1e9 / image.size)\n"
        "print(np.median(times[1:]), min(times), out[size // 2, size // 2].real)\n";
    const std::string command =
        std::string{"/usr/bin/python3 -c '"} + script + "' " + std::to_string(size) + " " + numpy_type;
    scipy_result result;
    std::FILE* const output = popen(command.c_str(), "r");
    if (!output) return result;
    double median = 0, best = 0, middle = 0;
    if (std::fscanf(output, "%lf %lf %lf", &median, &best, &middle) == 3) result = {{median, best}, middle};
    pclose(output);
    return result;
}

template <class T>
void run(const char* type, const char* numpy_type, std::ptrdiff_t size)
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
    const auto scipy = scipy_rotation(numpy_type, size);
    if (scipy.time.median_ns > 0) {
        bench::check(std::abs(to(size / 2, size / 2) - T(static_cast<real>(scipy.middle))) < 1e-2,
                     "affine beside SciPy");
        bench::print(name("SciPy affine_transform, order 1"), type, scipy.time, affine.median_ns);
    }

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
        run<float>("float", "float32", size);
        run<double>("double", "float64", size);
        run<std::complex<float>>("complex float", "complex64", size);
    }
}
