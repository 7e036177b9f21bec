#include "functions/elementwise/modulus.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "functions/rank/extreme_filter.h"
#include "functions/rank/median_filter.h"
#include "functions/rank/median_z.h"
#include "functions/rank/nth_element.h"
#include "functions/smoothing/box_pass.h"
#include "functions/smoothing/box_slice.h"
#include "functions/smoothing/gaussian.h"
#include "functions/statistics/survey.h"
#include "functions/transpose/transpose.h"
#include "optics/shifter.h"
#include "optics/unwrap/goldstein.h"
#include "optics/wave_transfer.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

namespace functions = qorv::functions;
namespace optics = qorv::optics;
using namespace qorv::dm;

/// Prints the rows that this machine runs, and fails on a table whose order contradicts `choose`.
template <class Kernel>
void expect_best_first(const char* kernel, variants<Kernel> table)
{
    std::printf("%-16s", kernel);
    for (const auto& row : runnable(table)) std::printf(" %s", row.name);
    std::printf("\n");
    for (std::size_t i = 1; i < table.size(); ++i) EXPECT_GT(table[i - 1].needs, table[i].needs) << kernel;
    set_use_simd(0);
    EXPECT_STREQ(choose(table).name, "plain") << kernel;
    EXPECT_EQ(choose(table).needs, cpu::none) << kernel;
    set_use_simd(1);
    EXPECT_EQ(choose(table).function, runnable(table).front().function) << kernel;
}

TEST(Variants, AreOrderedFromWideVectorsToThePlainForm)
{
    read_processor_features();
    std::printf("Rows that this machine runs; scripts use the first one.\n");
    expect_best_first("wave transfer", optics::wave_transfer_variants());
    expect_best_first("shifter", optics::shifter_variants());
    expect_best_first("unwrapping", optics::goldstein_variants());
    expect_best_first("box pass", functions::box_pass_variants<float>());
    expect_best_first("box slice", functions::box_slice_variants<float>());
    expect_best_first("box, two slices", functions::box_slice2_variants<float>());
    expect_best_first("gaussian", functions::gaussian_variants<float>());
    expect_best_first("survey", functions::survey_variants<float>());
    expect_best_first("median filter", functions::median_variants<float>());
    expect_best_first("median along z", functions::median_z_variants<float>());
    expect_best_first("extremes", functions::extreme_variants<float>());
    expect_best_first("n-th element", functions::rank_variants<float>());
    expect_best_first("transpose", functions::transpose_variants());
    expect_best_first("modulus", functions::modulus_variants<float>());
    expect_best_first("modulus, phase", functions::modulus_and_phase_variants<float>());
    expect_best_first("polar", functions::polar_variants<float>());
    expect_best_first("power", functions::pow_variants<float>());
    expect_best_first("power of 2", functions::exp2_variants<float>());
    expect_best_first("logarithm", functions::log2_variants<float>());
}

}  // namespace
