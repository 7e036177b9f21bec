#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "bench.h"
#include "numeric/atan2.h"
#include "numeric/exp.h"
#include "numeric/log.h"
#include "numeric/pow.h"
#include "numeric/sincos.h"

// The elementary functions compared with the C library's for float, in vectorised loops; ns per value, one thread.

namespace {

constexpr std::ptrdiff_t count = 4096;  // stays in the first cache

std::vector<float> noise(float low, float high)
{
    std::mt19937 generator{1};
    std::uniform_real_distribution<float> values{low, high};
    std::vector<float> result(count);
    for (float& x : result) x = values(generator);
    return result;
}

bool near(const std::vector<float>& a, const std::vector<float>& b)
{
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!(std::abs(a[i] - b[i]) <= 4e-7f * std::max(1.0f, std::abs(b[i])))) return false;
    return true;
}

template <class Ours, class Library>
void compare(const char* name, Ours&& ours, Library&& library)
{
    std::vector<float> got(count), expected(count);
    ours(got.data());
    library(expected.data());
    bench::check(near(got, expected), name);
    const int rounds = 200;
    const auto repeated = [&](auto& work, std::vector<float>& into) {
        return bench::measure(double(count) * rounds, [&] {
            for (int i = 0; i < rounds; ++i) work(into.data());
        });
    };
    const auto slow = repeated(library, expected);
    bench::print(name, "C library", slow);
    bench::print(name, "ours", repeated(ours, got), slow.median_ns);
}

template <class Function>
auto each(const std::vector<float>& x, Function function)
{
    return [&x, function](float* result) {
        for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = function(x[i]);
    };
}

template <class Function>
auto each(const std::vector<float>& x, const std::vector<float>& y, Function function)
{
    return [&x, &y, function](float* result) {
        for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = function(x[i], y[i]);
    };
}

}  // namespace

int main()
{
    namespace numeric = qorv::numeric;
    const auto angles = noise(-1000, 1000), exponents = noise(-80, 80), positive = noise(1e-3f, 1e6f);
    const auto small = noise(-6, 6), x = noise(-1, 1);
    std::vector<float> other(count);
    compare(
        "sine and cosine",
        [&](float* result) {
            for (std::ptrdiff_t i = 0; i < count; ++i) {
                const auto [sine, cosine] = numeric::sincos(angles[i]);
                result[i] = sine;
                other[i] = cosine;
            }
        },
        [&](float* result) {
            for (std::ptrdiff_t i = 0; i < count; ++i) {
                result[i] = std::sin(angles[i]);
                other[i] = std::cos(angles[i]);
            }
        });
    compare("exp", each(exponents, [](float v) { return numeric::exp(v); }),
            each(exponents, [](float v) { return std::exp(v); }));
    compare("log", each(positive, [](float v) { return numeric::log(v); }),
            each(positive, [](float v) { return std::log(v); }));
    compare("pow", each(positive, small, [](float v, float w) { return numeric::pow(v, w); }),
            each(positive, small, [](float v, float w) { return std::pow(v, w); }));
    compare("atan2", each(small, x, [](float v, float w) { return numeric::atan2(v, w); }),
            each(small, x, [](float v, float w) { return std::atan2(v, w); }));
}
