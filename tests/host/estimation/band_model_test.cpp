#include "host/estimation/band_model.h"

#include <gtest/gtest.h>

#include <numbers>
#include <numeric>
#include <random>

#include "lens/transfer_value.h"

namespace {

using namespace zentrix;
using namespace zentrix::host;

constexpr int side = 64;
constexpr double pixel = 0.05;

/// All coefficients, each of which changes chi by a radian or so, behind a tilted beam and an envelope.
imaging lens_out_of_trim()
{
    imaging lens;
    for (const auto& about : lens::all_coefficients) {
        const double order = about.name[1] - '0';
        lens[about.which] = {0.3e-3 * std::pow(0.02, -order - 1) / about.nanometres, about.symmetry == 0 ? 0 : 50.0};
    }
    lens.contrast = 0.4;
    return lens;
}

const lens::optics microscope{0.002, pixel, {}, {0.6, 0, 0.01}, {0.5, -0.3}};

/// The spectrum of a phase object behind that lens.
wave_spectrum seen_spectrum()
{
    std::mt19937 random{5};
    std::vector<std::complex<float>> wave;
    for (int i = 0; i < side * side; ++i)
        wave.push_back(std::polar(1.0F, 0.5F * static_cast<float>(random()) / 4294967296.0F));
    forward_fft(wave.data(), side, side);
    const imaging lens = lens_out_of_trim();
    lens::optics setup = microscope;
    setup.lens = lens;
    const auto arguments = lens::arguments_for(setup, 2, 2, lens::direction::apply);
    wave_spectrum seen{side, side, pixel, std::move(wave)};
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            auto& value = seen.values[static_cast<std::size_t>(y * side + x)];
            const std::complex<double> g{(x - side / 2) / (side * pixel), (side / 2 - y) / (side * pixel)};
            const double turn = g == 0.0 ? 0 : -lens.contrast;
            value = std::complex<float>{std::complex<double>{value} * lens::transfer_value(arguments, g) *
                                        std::polar(1.0 / (side * side), turn)};
        }
    return seen;
}

std::vector<unknown> all_unknowns()
{
    std::vector<lens::coefficient> free;
    for (const auto& about : lens::all_coefficients) free.push_back(about.which);
    auto unknowns = unknowns_of(free);
    unknowns.push_back({lens::coefficient::C1, unknown::part::contrast});
    return unknowns;
}

TEST(BandModel, RemovesWhatTheTransferFunctionOfAnyCoefficientApplies)
{
    const auto spectrum = seen_spectrum();
    for (const double known : {0.0, 0.6}) {  // of all coefficients at the model's base
        imaging base;
        for (const auto& one : all_unknowns()) add_to(base, one, known * value_of(lens_out_of_trim(), one));
        const band_model model{spectrum, 15, microscope, base, all_unknowns(), 0};
        const auto place = model.variables_of(lens_out_of_trim());
        band_evaluator evaluate{model};
        EXPECT_LT(evaluate(criterion::modulus_variance, place, {}), 1e-9);
        EXPECT_GT(evaluate(criterion::modulus_variance, model.variables_of(base), {}), 1e-3);
        const auto back = model.imaging_at(place);
        for (const auto& one : all_unknowns()) {
            const double truth = value_of(lens_out_of_trim(), one);
            EXPECT_NEAR(value_of(back, one), truth, 1e-6 * std::abs(truth)) << lens::traits(one.which).name;
        }
    }
}

TEST(BandModel, GradientsAreDerivativesAndSumsOverTiles)
{
    const auto spectrum = seen_spectrum();
    const auto unknowns = all_unknowns();
    const band_model model{spectrum, 8, microscope, lens_out_of_trim(), unknowns, 0.2};
    band_evaluator evaluate{model};
    std::vector<double> place(unknowns.size(), 0.1), gradient(unknowns.size());
    for (const auto what : {criterion::modulus_variance, criterion::phase_skewness}) {
        evaluate(what, place, gradient);
        const auto tiles = evaluate.tile_gradients(what, place, 3, 2);
        for (std::size_t i = 0; i < place.size(); ++i) {
            const auto value_at = [&](double change) {
                auto moved = place;
                moved[i] += change;
                return evaluate(what, moved, {});
            };
            const double slope = (value_at(0.01) - value_at(-0.01)) / 0.02;
            EXPECT_NEAR(gradient[i], slope, 0.02 * std::abs(slope) + 1e-3) << i;
            double sum = 0;
            for (std::size_t tile = 0; tile < 6; ++tile) sum += tiles[tile * place.size() + i];
            EXPECT_NEAR(sum, gradient[i], 1e-4 * std::abs(slope) + 1e-5) << i;
        }
    }
    const auto weights = model.weights();
    EXPECT_NEAR(std::accumulate(weights.begin(), weights.end(), 0.0), 1, 1e-5);
    EXPECT_EQ(weights[0], 0);  // nothing counts in the outer half of the margin
}

}  // namespace
