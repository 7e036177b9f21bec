#include "bench.h"
#include "functions/elementwise/modulus.h"
#include "functions/elementwise/norm.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "numeric/atan2.h"
#include "numeric/exp.h"
#include "numeric/sincos.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <type_traits>

// Element-wise operations on float images against loops over the C library. One thread.

namespace {

using namespace qorv;
using complex = std::complex<float>;
constexpr std::size_t count = std::size_t{1} << 22;
constexpr auto n = static_cast<std::ptrdiff_t>(count);

/// `ours(result)` against a loop that computes each element by `element(i)`.
template <class R, class Ours, class Element>
void compare(const std::string& what, Ours ours, Element element)
{
    std::vector<R> result(count), library(count);
    bench::comparison compared{what, double(count)};
    compared.add(
        "library",
        [&] {
            for (std::size_t i = 0; i < count; ++i) library[i] = element(i);
        },
        [] { return true; });
    compared.add(
        "ours", [&] { ours(result.data()); },
        [&] {
            return std::equal(result.begin(), result.end(), library.begin(),
                              [](R a, R b) { return std::abs(a - b) <= 4e-7f * (1 + std::abs(b)); });
        });
}

void run()
{
    const auto rho = bench::noise<float>(count, 0, 3), angles = bench::noise<float>(count, -20, 20),
               exponents = bench::noise<float>(count, -3, 3), positive = bench::noise<float>(count, 0.01, 50);
    std::vector<complex> z(count);
    for (std::size_t i = 0; i < count; ++i) z[i] = std::polar(rho[i] + 0.1f, angles[count - 1 - i]);
    std::vector<float> other(count);

    const auto each = [](auto element) {
        return [element](float* r) {
            for (std::size_t i = 0; i < count; ++i) r[i] = element(i);
        };
    };
    compare<float>("sincos", each([&](std::size_t i) {
                       const auto turn = numeric::sincos(angles[i]);
                       return turn.sine + turn.cosine;
                   }),
                   [&](std::size_t i) { return std::sin(angles[i]) + std::cos(angles[i]); });
    compare<float>("exp", each([&](std::size_t i) { return numeric::exp(exponents[i]); }),
                   [&](std::size_t i) { return std::exp(exponents[i]); });
    compare<float>("atan2", each([&](std::size_t i) { return numeric::atan2(angles[i], exponents[i]); }),
                   [&](std::size_t i) { return std::atan2(angles[i], exponents[i]); });
    compare<float>(
        "exp2", [&](float* r) { functions::exp2(exponents.data(), r, n); },
        [&](std::size_t i) { return std::exp2(exponents[i]); });
    compare<float>(
        "log2", [&](float* r) { functions::log2(positive.data(), r, n); },
        [&](std::size_t i) { return std::log2(positive[i]); });
    compare<float>(
        "pow", [&](float* r) { functions::pow(positive.data(), exponents.data(), r, n); },
        [&](std::size_t i) { return std::pow(positive[i], exponents[i]); });
    compare<complex>(
        "polar", [&](complex* r) { functions::polar(rho.data(), angles.data(), r, n); },
        [&](std::size_t i) { return std::polar(rho[i], angles[i]); });
    compare<float>(
        "abs and arg", [&](float* r) { functions::modulus_and_phase(z.data(), other.data(), r, n); },
        [&](std::size_t i) {
            other[i] = std::abs(z[i]);
            return std::arg(z[i]);
        });
    compare<complex>(
        "carg", [&](complex* r) { functions::unit_phase(z.data(), r, n); },
        [&](std::size_t i) { return z[i] / std::abs(z[i]); });
    compare<float>(
        "norm", [&](float* r) { functions::norm(z.data(), 0.5, r, n); },
        [&](std::size_t i) { return std::norm(z[i]) * 0.5f; });

    for (const std::ptrdiff_t size : {512 * 512, 2048 * 2048}) {
        const auto pixels = static_cast<std::size_t>(size);
        const auto rows = [&]<class R>(const char* what, std::type_identity<R>, auto table, auto call) {
            bench::compare_variants<R>(what + std::to_string(pixels), double(pixels), pixels, table, call);
        };
        const std::type_identity<float> real;
        rows("abs ", real, functions::modulus_variants<float>(),
             [&](auto* kernel, float* to) { kernel(z.data(), to, size); });
        rows("abs and arg ", real, functions::modulus_and_phase_variants<float>(),
             [&](auto* kernel, float* to) { kernel(z.data(), other.data(), to, size); });
        rows("polar ", std::type_identity<complex>{}, functions::polar_variants<float>(),
             [&](auto* kernel, complex* to) { kernel(rho.data(), 1, angles.data(), to, size); });
        rows("exp2 ", real, functions::exp2_variants<float>(),
             [&](auto* kernel, float* to) { kernel(exponents.data(), to, size); });
        rows("log2 ", real, functions::log2_variants<float>(),
             [&](auto* kernel, float* to) { kernel(positive.data(), to, size); });
        rows("pow ", real, functions::pow_variants<float>(),
             [&](auto* kernel, float* to) { kernel(positive.data(), exponents.data(), to, size); });
    }
}

}  // namespace

int main(int argc, char** argv) { return bench::run(argc, argv, run); }
