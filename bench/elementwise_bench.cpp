#include "bench.h"
#include "functions/elementwise/modulus.h"
#include "functions/elementwise/norm.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "image/processor.h"

#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

// Element-wise operations on float images compared with plain loops over the C library, one thread.

namespace {

namespace functions = qorv::functions;
using complex = std::complex<float>;

constexpr int size = 2048;
constexpr std::size_t count = std::size_t{size} * size;

std::vector<float> noise(float low, float high)
{
    std::mt19937 generator{3};
    std::uniform_real_distribution<float> values{low, high};
    std::vector<float> result(count);
    for (float& x : result) x = values(generator);
    return result;
}

bool near(float a, float b) { return std::abs(a - b) <= 4e-7f * (1 + std::abs(b)); }
bool near(complex a, complex b) { return std::abs(a - b) <= 4e-7f * (1 + std::abs(b)); }

/// Times `ours(result)` and a loop that computes each element by `element(i)`.
template <class R, class Ours, class Element>
void compare(const char* what, const char* variant, Ours&& ours, Element&& element)
{
    std::vector<R> got(count), expected(count);
    const auto loop = [&] {
        for (std::size_t i = 0; i < count; ++i) expected[i] = element(i);
    };
    ours(got.data());
    loop();
    bool right = true;
    for (std::size_t i = 0; i < count; ++i) right = right && near(got[i], expected[i]);
    bench::check(right, what);
    const auto reference = bench::measure(double(count), loop, 5);
    bench::print(what, "C library", reference);
    bench::print(what, variant,
                 bench::measure(
                     double(count), [&] { ours(got.data()); }, 15),
                 reference.median_ns);
}

}  // namespace

int main()
{
    qorv::dm::read_processor_features();
    constexpr auto n = static_cast<std::ptrdiff_t>(count);
    const auto rho = noise(0, 3), theta = noise(-20, 20), exponents = noise(-3, 3), positive = noise(0.01f, 50);
    std::vector<complex> z(count);
    for (std::size_t i = 0; i < count; ++i) z[i] = {theta[i], exponents[i]};
    std::vector<float> phase(count);

    compare<complex>(
        "polar", "float", [&](complex* r) { functions::polar(rho.data(), theta.data(), r, n); },
        [&](std::size_t i) {
            return complex{rho[i] * std::cos(theta[i]), rho[i] * std::sin(theta[i])};
        });
    for (const auto& v : qorv::dm::runnable(functions::modulus_variants<float>()))
        compare<float>(
            "abs", v.name, [&](float* r) { v.function(z.data(), r, n); },
            [&](std::size_t i) { return std::abs(z[i]); });
    compare<float>(
        "abs and arg", "float", [&](float* r) { functions::modulus_and_phase(z.data(), phase.data(), r, n); },
        [&](std::size_t i) {
            phase[i] = std::abs(z[i]);
            return std::arg(z[i]);
        });
    compare<float>(
        "exp2", "float", [&](float* r) { functions::exp2(exponents.data(), r, n); },
        [&](std::size_t i) { return std::exp2(exponents[i]); });
    compare<float>(
        "log2", "float", [&](float* r) { functions::log2(positive.data(), r, n); },
        [&](std::size_t i) { return std::log2(positive[i]); });
    for (const auto& v : qorv::dm::runnable(functions::pow_variants<float>()))
        compare<float>(
            "pow", v.name, [&](float* r) { v.function(positive.data(), exponents.data(), r, n); },
            [&](std::size_t i) { return std::pow(positive[i], exponents[i]); });
    compare<complex>(
        "carg", "float", [&](complex* r) { functions::unit_phase(z.data(), r, n); },
        [&](std::size_t i) { return z[i] / std::abs(z[i]); });
    compare<float>(
        "norm", "float", [&](float* r) { functions::norm(z.data(), 0.5, r, n); },
        [&](std::size_t i) { return std::norm(z[i]) * 0.5f; });
}
