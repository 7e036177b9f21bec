#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "functions/elementwise/modulus.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "numeric/atan2.h"
#include "numeric/exp.h"
#include "numeric/float_bits.h"
#include "numeric/log.h"
#include "numeric/pow.h"
#include "numeric/sincos.h"
#include "tests/support/ulps.h"

// Largest errors of the elementary functions, against the C library in double precision: all 2^32 arguments of the
// functions of one (argument of the program: only every STRIDE-th), random pairs for those of two. Then the bits of all
// rows of the kernels against the plain row, on the same arguments. The exit code is 1 when an error exceeds its limit
// or a bit differs.

namespace {

using support::ulps;

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

template <class Check>
void over_all_floats(std::uint64_t stride, Check&& check)
{
    for (std::uint64_t bits = 0; bits < (1ull << 32); bits += stride)
        check(qorv::numeric::float_of(static_cast<std::uint32_t>(bits)));
}

template <class Truth>
bool one_argument(const char* name, std::uint64_t stride, float (*ours)(float), Truth&& truth)
{
    worst w{name, 0.501};
    over_all_floats(stride, [&](float x) { w.take(ulps(ours(x), truth(x)), x); });
    return w.report();
}

bool sine_and_cosine(std::uint64_t stride)
{
    worst sine{"sine to 1e6", 0.501}, cosine{"cosine to 1e6", 0.501};
    worst beyond{"angle beyond, |x| 2^-53", 1.5};
    over_all_floats(stride, [&](float x) {
        const auto [s, c] = qorv::numeric::sincos(x);
        const double wide = x, truth = std::sin(wide);
        if (std::abs(wide) <= 1e6 || !std::isfinite(x)) {
            sine.take(ulps(s, truth), x);
            cosine.take(ulps(c, std::cos(wide)), x);
        } else if (std::abs(wide) < 0x1p40)  // without the rounding of the result, which is no error of the angle
            beyond.take((std::abs(s - truth) - 0x1p-25) / (std::abs(wide) * 0x1p-53), x);
        else if (!(std::abs(s * s + c * c - 1.0f) < 1e-6f))
            beyond.take(1e9, x);
    });
    const bool right = sine.report() & cosine.report();
    return beyond.report() & right;
}

template <class Truth, class Draw>
bool two_arguments(const char* name, long pairs, float (*ours)(float, float), Truth&& truth, Draw&& draw)
{
    worst w{name, 0.51};
    for (long k = 0; k < pairs; ++k) {
        float x, y;
        draw(x, y);
        w.take(ulps(ours(x, y), truth(x, y)), x, y);
    }
    return w.report();
}

/// Bits of a result; all NaNs count as one.
std::uint32_t bits(float x) { return x != x ? 0x7fc00000u : qorv::numeric::bits_of(x); }

/// Compares all rows of a table with its plain row, in blocks of arguments that `fill(first)` provides.
/// `run(kernel, result)` computes a block of `results` numbers.
template <class Table, class Fill, class Run>
bool same_rows(const char* name, const Table& table, std::uint64_t blocks, std::size_t results, Fill fill, Run run)
{
    std::vector<float> plain(results), result(results);
    std::map<std::string, std::uint64_t> differing;
    for (std::uint64_t b = 0; b < blocks; ++b) {
        fill(b);
        run(table.back().function, plain.data());
        for (const auto& row : qorv::dm::runnable(table)) {
            run(row.function, result.data());
            for (std::size_t i = 0; i < results; ++i) differing[row.name] += bits(result[i]) != bits(plain[i]);
        }
    }
    bool same = true;
    for (const auto& [row, count] : differing) {
        std::printf("%-16s %-7s %llu of %llu results differ from the plain row\n", name, row.c_str(),
                    static_cast<unsigned long long>(count), static_cast<unsigned long long>(blocks * results));
        same = same && count == 0;
    }
    std::fflush(stdout);
    return same;
}

bool rows_have_the_same_bits(std::uint64_t stride)
{
    namespace functions = qorv::functions;
    constexpr std::size_t length = 1 << 16;
    constexpr auto count = static_cast<std::ptrdiff_t>(length);
    std::vector<float> a(length), b(length), other(length);
    std::mt19937 generator{2};
    const auto all = [&](std::uint64_t block) {
        for (std::size_t i = 0; i < length; ++i)
            a[i] = qorv::numeric::float_of(static_cast<std::uint32_t>((block * length + i) * stride));
    };
    const auto pairs = [&](std::uint64_t block) {
        all(block);
        for (float& y : b)
            y = qorv::numeric::float_of(block % 2 != 0 ? generator() : generator() % (1u << 26) + 0x3e000000u);
    };
    const std::uint64_t blocks = (1ull << 32) / stride / length;
    const float one = 1;
    std::vector<std::complex<float>> z(length);
    const auto points = [&](std::uint64_t block) {
        pairs(block);
        for (std::size_t i = 0; i < length; ++i) z[i] = {a[i], b[i]};
    };
    bool same = same_rows("exp2", functions::exp2_variants<float>(), blocks, length, all,
                          [&](auto* row, float* to) { row(a.data(), to, count); });
    same &= same_rows("log2", functions::log2_variants<float>(), blocks, length, all,
                      [&](auto* row, float* to) { row(a.data(), to, count); });
    same &= same_rows(
        "sine and cosine", functions::polar_variants<float>(), blocks, 2 * length, all,
        [&](auto* row, float* to) { row(&one, 0, a.data(), reinterpret_cast<std::complex<float>*>(to), count); });
    same &= same_rows("pow", functions::pow_variants<float>(), blocks, length, pairs,
                      [&](auto* row, float* to) { row(a.data(), b.data(), to, count); });
    same &= same_rows("modulus", functions::modulus_and_phase_variants<float>(), blocks, length, points,
                      [&](auto* row, float* to) { row(z.data(), to, other.data(), count); });
    same &= same_rows("phase", functions::modulus_and_phase_variants<float>(), blocks, length, points,
                      [&](auto* row, float* to) { row(z.data(), other.data(), to, count); });
    return same;
}

}  // namespace

int main(int argc, char** argv)
{
    namespace numeric = qorv::numeric;
    const std::uint64_t stride = argc > 1 ? std::max(1ull, std::strtoull(argv[1], nullptr, 10)) : 1;
    const long pairs = 4096 * static_cast<long>(std::max<std::uint64_t>(20, 50000 / stride));
    bool right = sine_and_cosine(stride);
    right &= one_argument("exp", stride, numeric::exp, [](double x) { return std::exp(x); });
    right &= one_argument("exp2", stride, numeric::exp2, [](double x) { return std::exp2(x); });
    right &= one_argument("log", stride, numeric::log, [](double x) { return std::log(x); });

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
    const auto true_pow = [](double x, double y) { return std::pow(x, y); };
    const auto true_atan2 = [](double y, double x) { return std::atan2(y, x); };
    right &= two_arguments("pow, any", pairs, numeric::pow, true_pow, any);
    right &= two_arguments("pow, finite", pairs, numeric::pow, true_pow, finite_power);
    right &= two_arguments("atan2, any", pairs, numeric::atan2, true_atan2, any);
    right &= two_arguments("atan2, unit square", pairs, numeric::atan2, true_atan2, plane);
    qorv::dm::read_processor_features();
    right &= rows_have_the_same_bits(stride);
    return right ? 0 : 1;
}
