#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "numeric/arrays.h"
#include "numeric/float_bits.h"
#include "tests/support/ulps.h"

// Largest errors of the elementary functions, against the C library in double precision: all 2^32 arguments of the
// functions of one (argument of the program: only every STRIDE-th), random pairs for those of two. Ends with 1 when a
// limit is passed.

namespace {

using array = std::vector<float>;
using support::ulps;
constexpr std::ptrdiff_t block = 4096;

struct worst
{
    const char* name;
    double limit;
    double error = 0;
    float x = 0, y = 0;

    void take(double e, float at_x, float at_y = 0)
    {
        if (!(e > error)) return;
        error = e;
        x = at_x;
        y = at_y;
    }
    bool report() const
    {
        std::printf("%-24s largest error %.6f ulp at %.9g %.9g, limit %.3f\n", name, error, x, y, limit);
        std::fflush(stdout);
        return error <= limit;
    }
};

/// `check` on all floats, a block at a time.
template <class Check>
void over_all_floats(std::uint64_t stride, Check&& check)
{
    array x(block);
    for (std::uint64_t bits = 0; bits < (1ull << 32);) {
        std::ptrdiff_t count = 0;
        for (; count < block && bits < (1ull << 32); bits += stride)
            x[static_cast<std::size_t>(count++)] = qorv::numeric::float_of(static_cast<std::uint32_t>(bits));
        check(x, count);
    }
}

template <class Array, class Truth>
bool one_argument(const char* name, std::uint64_t stride, Array&& ours, Truth&& truth)
{
    worst w{name, 0.501};
    array result(block);
    over_all_floats(stride, [&](const array& x, std::ptrdiff_t count) {
        ours(x.data(), result.data(), count);
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) w.take(ulps(result[i], truth(x[i])), x[i]);
    });
    return w.report();
}

bool sine_and_cosine(std::uint64_t stride)
{
    worst sine{"sine to 1e6", 0.501}, cosine{"cosine to 1e6", 0.501};
    worst beyond{"angle beyond, |x| 2^-53", 1.5};
    array s(block), c(block);
    over_all_floats(stride, [&](const array& x, std::ptrdiff_t count) {
        qorv::numeric::sincos(x.data(), s.data(), c.data(), count);
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            const double wide = x[i], truth = std::sin(wide);
            if (std::abs(wide) <= 1e6 || !std::isfinite(x[i])) {
                sine.take(ulps(s[i], truth), x[i]);
                cosine.take(ulps(c[i], std::cos(wide)), x[i]);
            } else if (std::abs(wide) < 0x1p40)  // one rounding of the result is not the angle's fault
                beyond.take((std::abs(s[i] - truth) - 0x1p-25) / (std::abs(wide) * 0x1p-53), x[i]);
            else if (!(std::abs(s[i] * s[i] + c[i] * c[i] - 1.0f) < 1e-6f))
                beyond.take(1e9, x[i]);
        }
    });
    const bool right = sine.report() & cosine.report();
    return beyond.report() & right;
}

template <class Array, class Truth, class Draw>
bool two_arguments(const char* name, long blocks, Array&& ours, Truth&& truth, Draw&& draw)
{
    worst w{name, 0.51};
    array x(block), y(block), result(block);
    for (long k = 0; k < blocks; ++k) {
        for (std::size_t i = 0; i < x.size(); ++i) draw(x[i], y[i]);
        ours(x.data(), y.data(), result.data(), block);
        for (std::size_t i = 0; i < x.size(); ++i) w.take(ulps(result[i], truth(x[i], y[i])), x[i], y[i]);
    }
    return w.report();
}

}  // namespace

int main(int argc, char** argv)
{
    namespace numeric = qorv::numeric;
    const std::uint64_t stride = argc > 1 ? std::max(1ull, std::strtoull(argv[1], nullptr, 10)) : 1;
    const long blocks = static_cast<long>(std::max<std::uint64_t>(20, 50000 / stride));
    const auto exp = [](const float* x, float* r, std::ptrdiff_t n) { numeric::exp(x, r, n); };
    const auto exp2 = [](const float* x, float* r, std::ptrdiff_t n) { numeric::exp2(x, r, n); };
    const auto log = [](const float* x, float* r, std::ptrdiff_t n) { numeric::log(x, r, n); };
    const auto log2 = [](const float* x, float* r, std::ptrdiff_t n) { numeric::log2(x, r, n); };
    bool right = sine_and_cosine(stride);
    right &= one_argument("exp", stride, exp, [](double x) { return std::exp(x); });
    right &= one_argument("exp2", stride, exp2, [](double x) { return std::exp2(x); });
    right &= one_argument("log", stride, log, [](double x) { return std::log(x); });
    right &= one_argument("log2", stride, log2, [](double x) { return std::log2(x); });

    std::mt19937 generator{1};
    std::uniform_real_distribution<float> unit{-1, 1};
    const auto any = [&](float& x, float& y) {
        x = numeric::float_of(generator());
        y = numeric::float_of(generator());
    };
    const auto finite_power = [&](float& x, float& y) {  // bases of all sizes, exponents that leave a finite result
        x = numeric::magnitude(numeric::float_of(generator()));
        y = unit(generator) * 150 / static_cast<float>(std::max(1e-6, std::abs(std::log2(double(x)))));
    };
    const auto plane = [&](float& x, float& y) {
        x = unit(generator);
        y = unit(generator);
    };
    const auto pow = [](const float* x, const float* y, float* r, std::ptrdiff_t n) { numeric::pow(x, y, r, n); };
    const auto atan2 = [](const float* x, const float* y, float* r, std::ptrdiff_t n) { numeric::atan2(x, y, r, n); };
    const auto true_pow = [](double x, double y) { return std::pow(x, y); };
    const auto true_atan2 = [](double y, double x) { return std::atan2(y, x); };
    right &= two_arguments("pow, any", blocks, pow, true_pow, any);
    right &= two_arguments("pow, finite", blocks, pow, true_pow, finite_power);
    right &= two_arguments("atan2, any", blocks, atan2, true_atan2, any);
    right &= two_arguments("atan2, unit square", blocks, atan2, true_atan2, plane);
    return right ? 0 : 1;
}
