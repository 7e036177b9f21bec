#include "image/interruption.h"

#include "functions/rank/extreme_filter.h"
#include "functions/rank/median_filter.h"
#include "functions/reciprocal/bragg_mask.h"
#include "functions/smoothing/gaussian.h"
#include "functions/statistics/center_of_mass.h"
#include "functions/statistics/radial_survey.h"
#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

#include <limits>

namespace {

using namespace qorv;
using namespace qorv::functions;
using support::canvas;
using support::message_of;

int questions = 0, yes_after = 0;

struct interruption : testing::Test
{
    void SetUp() override
    {
        dm::read_processor_features();
        questions = yes_after = 0;
        dm::set_interruption_question([] { return questions++ >= yes_after; });
    }
    void TearDown() override { dm::set_interruption_question(nullptr); }
};

TEST_F(interruption, StopsTheBlurWhenTheAnswerIsYes)
{
    const canvas<double> from{{2048, 2048, 1}}, to{{2048, 2048, 1}};
    const auto weights = gaussian_weights(std::numeric_limits<double>::infinity(), 1, 2048);
    yes_after = 2;
    for (const auto& row : dm::runnable(gaussian_variants<double>())) {
        questions = 0;
        EXPECT_EQ(message_of([&] { row.function(from.view(), to.view(), weights); }), "The call was interrupted.")
            << row.name;
        EXPECT_EQ(questions, 3) << row.name;
    }
}

TEST_F(interruption, IsAskedForByAllKernelsThatCanRunForLong)
{
    const canvas<float> from{{40, 30, 1}}, to{{40, 30, 1}};
    const canvas<float> profile{{26, 1, 1}};
    position center{20, 15};
    const lattice grid{4, 0, 0, 4, 0, 0};
    const disc small{1, 0}, large{30, 0};
    const radial_grid rings{20, 15, 1, 1};
    const mass_search search{10, 5, 0};
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"lattice mask", [&] { lattice_mask(grid, small, 40, 30); }},
        {"peak mask", [&] { peak_mask(std::vector<peak>(1), large, 40, 30); }},
        {"median", [&] { median_filter<float>(from.view(), 3, padding::zeros, to.view()); }},
        {"maximum", [&] { extreme_filter<float>(from.view(), extreme::maximum, 3, to.view()); }},
        {"radial means", [&] { radial_survey<float>(from.view(), rings, profile.view()); }},
        {"centre of mass", [&] { center_of_mass<float>(from.view(), center, search); }}};
    for (const auto& [name, call] : calls) {
        dm::set_interruption_question([] { return true; });
        EXPECT_EQ(message_of(call), "The call was interrupted.") << name;
        dm::set_interruption_question(nullptr);
        EXPECT_EQ(message_of(call), "") << name;
    }
}

}  // namespace
