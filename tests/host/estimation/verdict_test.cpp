#include "host/estimation/verdict.h"

#include <gtest/gtest.h>

namespace {

using namespace zentrix;
using namespace zentrix::host;
using lens::coefficient;

constexpr coefficient free_ones[] = {coefficient::C1, coefficient::A1, coefficient::B2};
constexpr unsigned c1 = 1, a1 = 2, b2 = 4, all = 7;  // bits: which are not determined

estimate question()
{
    estimate one;
    for (const auto which : free_ones) one.coefficients.push_back({which, {-1, 0}, 0, 0, false, {}, {}});
    return one;
}

/// C1, A1 and B2 are known to 0.01 nm and by nothing in chi.
phase_solution phase_answer()
{
    phase_solution found;
    found.unknowns = unknowns_of(free_ones);
    found.covariance = found.chi_covariance = found.chi_of_shifts = matrix{5};
    for (std::size_t i = 0; i < 5; ++i) found.covariance(i, i) = 1e-4;
    found.chi_per_unit.assign(5, 1);
    found.scattered = 0.3;
    found.lens[coefficient::C1].modulus = 7;
    return found;
}

amplitude_solution amplitude_answer()
{
    amplitude_solution found;
    found.prominence = 2;
    found.contrast_in_focus = 2;
    found.agreeing = 4;
    found.lens[coefficient::C1].modulus = 7;
    return found;
}

void expect_unknown(const estimate& result, unsigned unknown, const std::string& reason, const std::string& name)
{
    for (unsigned i = 0; i < result.coefficients.size(); ++i) {
        const auto& one = result.coefficients[i];
        const bool is_known = (unknown >> i & 1) == 0;
        EXPECT_EQ(one.determined, is_known) << name << i;
        if (!is_known) {
            EXPECT_EQ(one.reason.substr(0, reason.size()), reason) << name;
            EXPECT_EQ(one.value.modulus, -1) << name;  // the start
        }
    }
}

// Each limit from both sides: x = 0.99 is within it, 1.01 beyond it.
TEST(Verdict, EachLimitOfAPhaseObjectHasItsReason)
{
    using change = void (*)(estimate&, phase_solution&, double);
    const struct
    {
        unsigned unknown;
        const char* reason;
        change apply;
    } rows[] = {
        {all, "the noise is 38 %", [](auto& e, auto&, double x) { e.noise = 0.38 * x; }},
        {all, "the wave is constant", [](auto&, auto& p, double x) { p.scattered = 1e-5 / x; }},
        {all, "the spectrum has hardly any signal", [](auto&, auto& p, double x) { p.has_signal = x < 1; }},
        {all, "the modulus varies at every focus", [](auto&, auto& p, double x) { p.misfit = 0.05 * x; }},
        {all, "the criterion hardly", [](auto&, auto& p, double x) { p.chi_covariance(1, 1) = 0.055 * 0.055 * x * x; }},
        {b2, "the criterion hardly", [](auto&, auto& p, double x) { p.chi_covariance(3, 3) = 0.055 * 0.055 * x * x; }},
        {a1, "the criterion hardly", [](auto&, auto& p, double x) { p.covariance(2, 2) = 0.35 * 0.35 * x * x; }},
        {all, "it depends on the envelope", [](auto&, auto& p, double x) { p.chi_of_shifts(0, 0) = 0.01 * x * x; }},
        {b2, "it depends on the envelope", [](auto&, auto& p, double x) { p.chi_of_shifts(4, 4) = 0.01 * x * x; }},
        {all, "rival", [](auto&, auto& p, double x) { p.even_doubt = x > 1 ? "rival" : ""; }},
        {b2, "rival", [](auto&, auto& p, double x) { p.odd_doubt = x > 1 ? "rival" : ""; }},
    };
    for (const auto& row : rows)
        for (const double x : {0.99, 1.01}) {
            auto result = question();
            auto found = phase_answer();
            row.apply(result, found, x);
            judge(result, found);
            expect_unknown(result, x < 1 ? 0 : row.unknown, row.reason, row.reason + std::to_string(x));
        }
}

TEST(Verdict, EachLimitOfAnAmplitudeObjectHasItsReason)
{
    using change = void (*)(estimate&, amplitude_solution&, double);
    const struct
    {
        unsigned unknown;
        const char* reason;
        change apply;
    } rows[] = {
        {c1 | a1, "the noise is 38 %", [](auto& e, auto&, double x) { e.noise = 0.38 * x; }},
        {c1 | a1, "the sharpest focus is at the end", [](auto&, auto& p, double x) { p.is_at_end = x > 1; }},
        {c1 | a1, "no focus is clearly sharper", [](auto&, auto& p, double x) { p.prominence = 1.05 / x; }},
        {c1 | a1, "the sharpness has no maximum", [](auto&, auto& p, double x) { p.is_maximum = x < 1; }},
        {c1 | a1, "another focus is as sharp", [](auto&, auto& p, double x) { p.has_rival = x > 1; }},
        {c1 | a1, "parts of the wave", [](auto&, auto& p, double x) { p.agreeing = x < 1 ? 4 : 3; }},
        {c1 | a1, "the modulus does not vary more", [](auto&, auto& p, double x) { p.contrast_in_focus = 1.3 / x; }},
        {c1 | a1, "the sharpness hardly", [](auto&, auto& p, double x) { p.c1_chi = p.chi_uncertainty = 0.2 * x; }},
        {a1, "the sharpness hardly", [](auto&, auto& p, double x) { p.chi_uncertainty = 0.2 * x; }},
        {a1, "the sharpness hardly", [](auto&, auto& p, double x) { p.a1_chi = 0.1 * x; }},
    };
    for (const auto& row : rows)
        for (const double x : {0.99, 1.01}) {
            auto result = question();
            result.coefficients.pop_back();
            auto found = amplitude_answer();
            row.apply(result, found, x);
            lens::optics setup;
            setup.lens[coefficient::C1].modulus = setup.lens[coefficient::A1].modulus = -1;
            judge(result, setup, found);
            expect_unknown(result, x < 1 ? 0 : row.unknown, row.reason, row.reason + std::to_string(x));
            EXPECT_EQ(result.setup.lens[coefficient::C1].modulus, result.coefficients[0].value.modulus);
        }
}

}  // namespace
