#include <algorithm>
#include <cmath>

#include "image/errors.h"
#include "script/destinations.h"

// The survey as a script meets it.
namespace {

using namespace script;

/// Minimum, maximum, sum, sum of squares and sum of absolute values; as many as asked for.
std::vector<double> survey(script_host& script, const image_ref& source, std::size_t outputs = 5)
{
    arguments given{source};
    for (std::size_t k = 0; k < outputs; ++k) given.emplace_back(make_cell());
    EXPECT_TRUE(is_null(script.call("ZXSurvey", given)));
    std::vector<double> values;
    for (std::size_t k = 0; k < outputs; ++k)
        values.push_back(std::get<double>(std::get<cell_ref>(given[k + 1])->value));
    return values;
}

// Sums of whole numbers are exact in any order, so that the vector kernels have to meet them too.
TEST(Survey, IsTheDirectSum)
{
    script_host script;
    unsigned calls = 0;
    for (const std::uint32_t code : real_types)
        for (const extents& sizes : std::vector<extents>{{1}, {3}, {67}, {1, 9}, {13, 7}, {7, 5, 3}}) {
            const auto source = whole_numbers(code, sizes, 3);
            double lowest = 1e300, highest = -1e300, sum = 0, squares = 0, absolutes = 0;
            for (std::uint32_t z = 0; z < source->size(2); ++z)
                for (std::uint32_t y = 0; y < source->size(1); ++y)
                    for (std::uint32_t x = 0; x < source->size(0); ++x) {
                        const double v = number_at(source, x, y, z);
                        lowest = std::min(lowest, v), highest = std::max(highest, v);
                        sum += v, squares += v * v, absolutes += std::abs(v);
                    }
            const std::vector<double> five{lowest, highest, sum, squares, absolutes},
                four{five.begin(), five.begin() + 4};
            for (const bool simd : {true, false}) {
                script.use_simd(simd);
                EXPECT_EQ(survey(script, source), five) << "type " << code;
                EXPECT_EQ(survey(script, source, 4), four) << "type " << code;
                for (const auto step : spread_steps) EXPECT_EQ(survey(script, spread(source, step).picture), five);
                calls += 5;
            }
            EXPECT_EQ(source->changes(), 0u);
        }
    EXPECT_EQ(script.host().records().traces().at("SurveyDM").reports, calls);
}

TEST(Survey, HasTheSameExtremesWithTheSwitchOnAndOff)
{
    script_host script;
    for (const std::uint32_t code : float_types) {
        const auto source = noise(code, {67, 41, 3});
        script.use_simd(true);
        const auto vector = survey(script, source);
        script.use_simd(false);
        const auto plain = survey(script, source);
        EXPECT_EQ(vector[0], plain[0]);
        EXPECT_EQ(vector[1], plain[1]);
        for (int k = 2; k < 5; ++k) EXPECT_NEAR(vector[k], plain[k], 1e-13 * plain[3]);
    }
}

TEST(Survey, RefusesOtherTypesAndLeavesItsOutputs)
{
    std::vector<refusal> rows;
    const auto kept = [] { return make_cell(7.5); };
    for (const std::uint32_t code : {3u, 8u, 13u, 14u, 15u, 17u, 18u, 19u, 23u, 24u, 25u, 26u}) {
        const auto source = whole_numbers(code, {4, 3});
        rows.push_back(
            {"ZXSurvey", {source, kept(), kept(), kept(), kept(), kept()}, qorv::dm::errors::invalid_data_type});
        rows.push_back({"ZXSurvey", {source, kept(), kept(), kept(), kept()}, qorv::dm::errors::invalid_data_type});
    }
    rows.push_back(
        {"ZXSurvey", {script_value{}, kept(), kept(), kept(), kept()}, qorv::dm::errors::parameters_invalid});
    expect_refusals(rows);
}

}  // namespace
