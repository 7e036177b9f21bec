#include "host/estimation/estimate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "bench/estimation_waves.h"
#include "host/estimation/search_run.h"
#include "lens/electron.h"

namespace {

using namespace zentrix;
using lens::coefficient;

bench::simulation small_wave()
{
    bench::simulation how;
    how.size = 256;
    how.wavelength_nm = lens::electron_wavelength(300);
    how.lens = bench::random_lens(100);
    how.seed = 100;
    return how;
}

host::estimate estimate_of(const bench::simulation& how, host::estimate_options options = {},
                           const host::estimate_progress& progress = {})
{
    const lens::optics setup{
        how.wavelength_nm, how.pixel_nm, {}, options.widths_are_known ? how.spread : lens::coherence{}, {}};
    return host::estimate_aberrations(*bench::simulate(how), setup, options, progress);
}

/// The error of a coefficient in its standard deviation.
double error_of(const host::estimated_coefficient& one, const lens::aberrations& truth)
{
    lens::aberrations found;
    found[one.which] = one.value;
    const auto off = found.in_nanometres(one.which) - truth.in_nanometres(one.which);
    return std::abs(off) / lens::traits(one.which).nanometres / one.uncertainty;
}

TEST(Estimate, FindsAllCoefficientsOfAWaveWithoutNoise)
{
    const auto how = small_wave();
    const auto found = estimate_of(how);
    for (const auto& one : found.coefficients) {
        const auto& about = lens::traits(one.which);
        EXPECT_TRUE(one.determined) << about.name << ": " << one.reason;
        const double scale = std::abs(how.lens.in_nanometres(one.which));
        const double off = std::abs(found.setup.lens.in_nanometres(one.which) - how.lens.in_nanometres(one.which));
        EXPECT_LT(off, 1e-5 * scale + 1e-5) << about.name;
        EXPECT_LT(error_of(one, how.lens), 6) << about.name;
    }
}

TEST(Estimate, IsRightWithinItsUncertaintyOrSaysThatItDoesNotKnow)
{
    const struct
    {
        const char* name;
        void (*change)(bench::simulation&);
        bool must_know_focus, knows_widths = true;
    } rows[] = {
        {"noise", [](bench::simulation& how) { how.noise = 0.1; }, true},
        {"amorphous", [](bench::simulation& how) { how.object = bench::specimen::amorphous, how.noise = 0.05; }, true},
        {"absorbing", [](bench::simulation& how) { how.absorption = 0.2, how.noise = 0.02; }, true},
        {"cropped", [](bench::simulation& how) { how.is_cropped = true, how.noise = 0.05; }, false},
        {"envelope",
         [](bench::simulation& how) {
             how.spread = {3, 0, 0.02}, how.noise = 0.02;
         },
         true},
        {"unknown envelope",
         [](bench::simulation& how) {
             how.spread = {3, 0, 0.02}, how.noise = 0.02;
         },
         true, false},
        {"cropped strong crystal",
         [](bench::simulation& how) {
             how.is_cropped = true, how.noise = 0.05;
             how.lens = bench::random_lens(302);
             how.seed = 302001;
         },
         false},
        {"crystal whose phase is sharpest at a wrong coma",
         [](bench::simulation& how) {
             how.noise = 0.1;
             how.lens = bench::random_lens(9006);
             how.seed = 9006001;
         },
         false},
        {"dark columns", [](bench::simulation& how) { how.strength = -1, how.noise = 0.05; }, true},
        {"much noise", [](bench::simulation& how) { how.noise = 0.3; }, false},
    };
    for (const auto& row : rows) {
        auto how = small_wave();
        row.change(how);
        host::estimate_options options;
        options.widths_are_known = row.knows_widths;
        const auto found = estimate_of(how, options);
        for (const auto& one : found.coefficients) {
            const std::string name = row.name + std::string{": "} + std::string{lens::traits(one.which).name};
            if (one.determined) {
                EXPECT_LT(error_of(one, how.lens), 5) << name;
            }
            if (row.must_know_focus && one.which == coefficient::C1) {
                EXPECT_TRUE(one.determined) << name << ": " << one.reason;
            }
        }
    }
}

/// Of a microscope with C1 and A1 only.
bench::simulation out_of_focus(int size, double noise, std::uint32_t seed, double c1, lens::polar a1)
{
    auto how = small_wave();
    how.size = size;
    how.noise = noise;
    how.seed = seed;
    how.lens = {};
    how.lens[coefficient::C1].modulus = c1;
    how.lens[coefficient::A1] = a1;
    return how;
}

TEST(Estimate, FindsMuchAstigmatismAndKnowsMinimaThatAreAsGood)
{
    host::estimate_options options;
    options.free = {coefficient::C1, coefficient::A1};
    options.widths_are_known = true;
    const auto how = out_of_focus(192, 0.02, 1, -63.6, {60, 200});
    for (const auto& one : estimate_of(how, options).coefficients) {
        EXPECT_TRUE(one.determined) << one.reason;
        EXPECT_LT(error_of(one, how.lens), 5);
    }
    const auto small = out_of_focus(96, 0.15, 23, 86.82, bench::random_lens(22)[coefficient::A1]);
    for (const auto& one : estimate_of(small, options).coefficients)
        EXPECT_EQ(one.reason, "another minimum is as good within the noise");
}

TEST(Estimate, DoesNotStayWhereEdgesOfOneDirectionAreInFocus)
{
    auto how = out_of_focus(128, 0.03, 3, 3.4, {9.57, 90});
    how.object = bench::specimen::target;
    host::estimate_options options;
    options.free = {coefficient::C1, coefficient::A1};
    options.object = host::specimen_kind::amplitude;
    const auto found = estimate_of(how, options);
    EXPECT_NEAR(found.coefficients[0].found.modulus, 3.4, 0.1);
    EXPECT_FALSE(found.coefficients[1].determined);  // bars along the axes hardly show astigmatism at 45 degrees
}

/// Bars of many greys in light.
bench::simulation grey_bars(int size, std::uint32_t lens, std::uint32_t seed)
{
    bench::simulation how;
    how.object = bench::specimen::grey_target;
    how.size = size;
    how.wavelength_nm = 405;
    how.pixel_nm = 6900;
    how.aperture = 0.25 / how.pixel_nm;
    how.noise = 0.05;
    how.lens = bench::light_lens(bench::random_lens(lens));
    how.seed = seed;
    return how;
}

TEST(Estimate, FocusesGreyBarsBySharpness)
{
    const auto how = grey_bars(256, 501, 501002);
    const double c1 = how.lens[coefficient::C1].modulus;
    host::estimate_options options;
    options.free = {coefficient::C1, coefficient::A1};
    const auto found = estimate_of(how, options);
    EXPECT_EQ(found.object, host::specimen_kind::amplitude);
    for (const auto& one : found.coefficients) {
        EXPECT_TRUE(one.determined) << one.reason;
        EXPECT_LT(error_of(one, how.lens), 5);
    }
    options.object = host::specimen_kind::amplitude;
    options.defocus = {c1 + 1e6, c1 + 4e7};
    EXPECT_EQ(estimate_of(how, options).coefficients[0].reason, "the sharpest focus is at the end of the range");
}

TEST(Estimate, DoesNotTakeAFocusThatIsNotClearlyTheSharpest)
{
    auto how = grey_bars(128, 23, 24);  // the sharpest focus is ten standard deviations off
    how.widest_bar = 16;
    host::estimate_options options;
    options.free = {coefficient::C1, coefficient::A1};
    options.object = host::specimen_kind::amplitude;
    for (const auto which : options.free) how.lens[which].modulus /= 2;
    EXPECT_FALSE(estimate_of(how, options).any_determined());
}

TEST(Estimate, SearchesWhereItIsToldTo)
{
    auto how = small_wave();
    how.lens = {};
    how.lens[coefficient::C1].modulus = 950;
    host::estimate_options options;
    options.free = {coefficient::C1};
    options.defocus = {900, 1000};
    EXPECT_EQ(estimate_of(how, options).coefficients[0].reason,
              "the minimum is farther away than any lens is out of trim");
    lens::optics setup{how.wavelength_nm, how.pixel_nm, {}, {}, {}};
    setup.lens[coefficient::C1].modulus = 900;
    options.defocus = {};
    const auto found = host::estimate_aberrations(*bench::simulate(how), setup, options);
    EXPECT_TRUE(found.coefficients[0].determined) << found.coefficients[0].reason;
    EXPECT_NEAR(found.coefficients[0].value.modulus, 950, 1e-3);
}

TEST(Estimate, IsNotBiasedByAStrongCrystal)
{
    auto how = small_wave();
    how.strength = 4;
    how.noise = 0.05;
    host::estimate_options options;
    options.free = {coefficient::C1, coefficient::C3};
    lens::optics setup{how.wavelength_nm, how.pixel_nm, how.lens, {}, {}};
    setup.lens[coefficient::C1] = setup.lens[coefficient::C3] = {};
    const auto found = host::estimate_aberrations(*bench::simulate(how), setup, options);
    EXPECT_NEAR(found.coefficients[0].found.modulus, how.lens[coefficient::C1].modulus, 0.1);  // 0.3 in the narrow band
}

TEST(Estimate, DoesNotFocusAPhaseObjectBySharpness)
{
    auto how = small_wave();
    how.lens = {};
    how.lens[coefficient::C1].modulus = -40;
    host::estimate_options options;
    options.free = {coefficient::C1};
    options.object = host::specimen_kind::amplitude;
    const std::string reason = estimate_of(how, options).coefficients[0].reason;
    EXPECT_TRUE(reason.starts_with("the modulus does not vary more in focus")) << reason;
}

TEST(Estimate, DeterminesNothingOfNoiseOrVacuum)
{
    const struct
    {
        bench::specimen object;
        double noise;
        const char* reason;
    } rows[] = {{bench::specimen::crystal, 0.42, "the noise is 4"},
                {bench::specimen::vacuum, 0.1, ""},
                {bench::specimen::vacuum, 0.01, ""},
                {bench::specimen::vacuum, 0, "the wave is constant"}};
    for (const auto& [object, noise, reason] : rows) {
        auto how = small_wave();
        how.object = object;
        how.noise = noise;
        for (const auto& one : estimate_of(how).coefficients) {
            EXPECT_FALSE(one.determined) << noise;
            EXPECT_TRUE(!one.reason.empty() && one.reason.starts_with(reason)) << one.reason;
        }
    }
}

TEST(Estimate, DoesNotDependOnTheScaleOfTheWave)
{
    const auto wave = bench::simulate(small_wave());
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x) wave->at<std::complex<float>>(x, y) *= 1e-30F;
    const lens::optics setup{small_wave().wavelength_nm, small_wave().pixel_nm, {}, {}, {}};
    const auto found = host::estimate_aberrations(*wave, setup, {});
    EXPECT_TRUE(found.coefficients[0].determined) << found.coefficients[0].reason;
}

TEST(Estimate, IsTheSameWithAnyNumberOfThreads)
{
    auto how = small_wave();
    how.noise = 0.1;
    host::estimate_options one, three;
    one.threads = 1;
    three.threads = 3;
    const auto a = estimate_of(how, one), b = estimate_of(how, three);
    for (std::size_t i = 0; i < a.coefficients.size(); ++i) {
        EXPECT_EQ(a.coefficients[i].found.modulus, b.coefficients[i].found.modulus);
        EXPECT_EQ(a.coefficients[i].uncertainty, b.coefficients[i].uncertainty);
    }
}

TEST(Estimate, StopsWhenProgressSaysSoAndPassesItsException)
{
    const auto stopped = estimate_of(small_wave(), {}, [](double, const lens::optics&) { return false; });
    EXPECT_TRUE(stopped.stopped);
    EXPECT_FALSE(stopped.any_determined());
    EXPECT_THROW(estimate_of(small_wave(), {}, [](double, const lens::optics&) -> bool { throw 7; }), int);
}

TEST(Estimate, StopsFromAnyThreadAndWhileTheCallersIsIdle)
{
    std::atomic<bool> stop{true}, begun{false};
    host::estimate_options options;
    options.stop = &stop;
    const auto found = estimate_of(small_wave(), options);
    EXPECT_TRUE(found.stopped);
    EXPECT_LE(found.evaluations, 1u + static_cast<std::size_t>(host::processors()));

    const host::estimate_progress refuse = [](double, const lens::optics&) { return false; };
    host::search_run run{refuse, 2, {}};
    EXPECT_FALSE(run.for_each(2, [&, caller = std::this_thread::get_id()](std::size_t) {
        const bool waits = std::this_thread::get_id() == caller;
        if (!waits) begun = true;
        for (int i = 0; i < 5'000 && !(waits && begun); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
            if (!waits) run.evaluated();
        }
    }));
}

TEST(Estimate, RefusesWhatItCannotSearch)
{
    const struct
    {
        const char* text;
        void (*change)(host::estimate_options&);
    } rows[] = {
        {"No coefficient is free.", [](auto& options) { options.free.clear(); }},
        {"C1 is free twice.",
         [](auto& options) {
             options.free = {coefficient::C1, coefficient::C1};
         }},
        {"The range of C1 is empty.",
         [](auto& options) {
             options.defocus = {5, -5};
         }},
        {"The range of C1 is too wide: at the resolution of this wave it may be 4000 nm wide.",
         [](auto& options) {
             options.defocus = {-1e5, 1e5};
         }},
        {"The range of C1 is too wide: at the resolution of this wave it may be 15000 nm wide.",
         [](auto& options) {
             options.defocus = {-1e5, 1e5};
             options.object = host::specimen_kind::amplitude;
         }},
        {"The region is not within the wave of 256 x 256 pixels.",
         [](auto& options) {
             options.region = {200, 0, 100, 100};
         }},
        {"An estimate needs at least 64 x 64 pixels.",
         [](auto& options) {
             options.region = {0, 0, 63, 64};
         }},
    };
    for (const auto& row : rows) try {
            host::estimate_options options;
            row.change(options);
            estimate_of(small_wave(), options);
            ADD_FAILURE() << row.text;
        } catch (const std::invalid_argument& problem) {
            EXPECT_STREQ(problem.what(), row.text);
        }
}

}  // namespace
