#include "host/estimation/certainty.h"

#include <gtest/gtest.h>

#include "bench/estimation_waves.h"
#include "host/estimation/amplitude_certainty.h"
#include "host/estimation/envelope_shifts.h"

namespace {

using namespace zentrix;
using namespace zentrix::host;
using lens::coefficient;

/// What the parts of a search at the true coefficients need.
struct at_the_truth
{
    explicit at_the_truth(const bench::simulation& how, std::vector<coefficient> free)
        : spectrum{spectrum_of(*bench::simulate(how), {0, 0, how.size, how.size}, how.pixel_nm)},
          task{spectrum, {how.wavelength_nm, how.pixel_nm, how.lens, how.spread, {}}, std::move(free), {}, true},
          unknowns{unknowns_of(task.free)}
    {}
    band_model model(double resolution) const { return task.model_up_to(resolution, {task.start.lens}, unknowns); }
    std::optional<stationary_point> settled(const band_model& in)
    {
        return settle(run, in, deciding_by(in, criterion::modulus_variance), std::vector<double>(unknowns.size()));
    }

    wave_spectrum spectrum;
    search_task task;
    std::vector<unknown> unknowns;
    estimate_progress nothing;
    search_run run{nothing, 1, task.start};
};

bench::simulation small_film()
{
    bench::simulation how;
    how.object = bench::specimen::amorphous;
    how.size = 128;
    how.wavelength_nm = 0.002;
    how.lens = bench::random_lens(3);
    return how;
}

bench::simulation small_bars()
{
    bench::simulation how;
    how.object = bench::specimen::grey_target;
    how.size = 128;
    how.wavelength_nm = 405;
    how.pixel_nm = 6900;
    how.aperture = 0.25 / how.pixel_nm;
    return how;
}

TEST(Certainty, IsTheScatterOfWavesWithOtherNoise)
{
    constexpr int waves = 16;
    double squares = 0, count = 0, sharp_squares = 0;
    for (std::uint32_t seed = 1; seed <= waves; ++seed) {
        auto how = small_film();
        how.noise = 0.1;
        how.seed = seed;
        at_the_truth film{how, {coefficient::C1, coefficient::A1}};
        const auto found = film.settled(film.model(8));
        ASSERT_TRUE(found);
        for (std::size_t i = 0; i < 3; ++i, ++count) squares += found->at[i] * found->at[i] / found->covariance(i, i);

        how = small_bars();
        how.noise = 0.1;
        how.seed = seed;
        at_the_truth bars{how, {coefficient::C1}};
        const auto model = bars.model(3e-5);
        const auto best = model.variables_of(sharpest_near(bars.run, model, {how.lens}, 5e5));
        sharpness sharp{bars.run, model};
        const auto covariance = covariance_at_maximum(sharp, best);
        ASSERT_TRUE(covariance);
        sharp_squares += best[0] * best[0] / (*covariance)(0, 0);
    }
    EXPECT_GT(squares / count, 0.4);
    EXPECT_LT(squares / count, 2);
    EXPECT_GT(sharp_squares / waves, 0.3);
    EXPECT_LT(sharp_squares / waves, 4);  // the part of the end of the band is not in it
}

TEST(Certainty, SuperiorityScattersByAboutOneWithNoise)
{
    double sum = 0, squares = 0;
    constexpr int waves = 12;
    for (std::uint32_t seed = 1; seed <= waves; ++seed) {
        auto how = small_film();
        how.noise = 0.3;
        how.seed = seed;
        const at_the_truth film{how, {coefficient::C1}};
        const auto model = film.model(8);
        band_evaluator evaluate{model};
        const double off[] = {0.2}, at[] = {0};
        const double one = superiority(evaluate, model, at, off);
        EXPECT_GT(one, 4);
        sum += one / waves;
        squares += one * one / waves;
    }
    EXPECT_GT(squares - sum * sum, 0.3);
    EXPECT_LT(squares - sum * sum, 7);
}

TEST(EnvelopeShifts, AreWhatWidthsThatAreATenthLargerChange)
{
    auto how = small_film();
    how.spread = {4, 0, 0.02};
    at_the_truth film{how, {coefficient::C1, coefficient::C3}};
    const auto model = film.model(8);
    const auto found = film.settled(model);
    ASSERT_TRUE(found);
    const auto shifts =
        envelope_shifts(film.run, film.task, model, deciding_by(model, criterion::modulus_variance), *found);
    ASSERT_EQ(shifts.size(), 2U);
    double lens::coherence::*const widths[] = {&lens::coherence::focus_spread_nm, &lens::coherence::vibration_nm};
    for (std::size_t k = 0; k < 2; ++k) {
        film.task.start.spread = how.spread;
        film.task.start.spread.*widths[k] *= 1.1;
        const auto other = film.settled(film.model(8));
        ASSERT_TRUE(other);
        for (std::size_t i = 0; i < 2; ++i) {
            const double change = other->at[i] - found->at[i];
            EXPECT_NEAR(shifts[k][i], change, 0.3 * std::abs(change));
        }
    }
}

}  // namespace
