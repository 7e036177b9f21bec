#include "bench.h"
#include "functions/statistics/center_of_mass.h"
#include "functions/statistics/min_max.h"
#include "functions/statistics/radial_survey.h"
#include "functions/statistics/survey.h"
#include "functions/statistics/survey_difference.h"

#include <algorithm>
#include <cmath>
#include <limits>

// Statistics of 2048 square against plain loops. One thread.

namespace {

using namespace qorv;
using functions::difference_survey;
constexpr std::ptrdiff_t n = 2048;
constexpr double count = double(n) * n;

template <class T>
void survey(const std::string& type)
{
    const auto pixels = bench::noise<T>(n * n, 0, 1000);
    const dm::image<const T> image{pixels.data(), n, n};
    const auto rows = dm::runnable(functions::survey_variants<T>());
    const functions::survey_record plain = rows.back().function(image);
    functions::survey_record record;
    bench::comparison compared{"survey " + type, count};
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        compared.add(
            row->name, [&, kernel = row->function] { record = kernel(image); },
            [&] { return record.count == plain.count && std::abs(record.sum - plain.sum) <= 1e-12 * plain.sum; });
}

difference_survey plain_survey(const std::vector<float>& a, const std::vector<float>& b)
{
    difference_survey s;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double u = a[i], v = b[i], d = u - v;
        s.sum1 += u, s.square_sum1 += u * u, s.sum2 += v, s.square_sum2 += v * v;
        s.difference_sum += d, s.difference_square_sum += d * d, s.difference_absolute_sum += std::fabs(d);
    }
    return s;
}

void others()
{
    const auto a = bench::noise<float>(n * n, 0, 1000), b = bench::noise<float>(n * n, -500, 500);
    const dm::image<const float> first{a.data(), n, n}, second{b.data(), n, n};
    const auto yes = [] { return true; };
    {
        difference_survey loop, kernel;
        bench::comparison compared{"SurveyDifference", count};
        compared.add(
            "loop", [&] { loop = plain_survey(a, b); }, yes);
        compared.add(
            "kernel", [&] { kernel = functions::survey_difference<float>(first, second); },
            [&] { return std::abs(kernel.difference_square_sum / loop.difference_square_sum - 1) < 1e-10; });
    }
    {
        float loop = 0, kernel = 0;
        bench::comparison compared{"MinMax", count};
        compared.add(
            "minmax_element", [&] { loop = *std::minmax_element(a.begin(), a.end()).second; }, yes);
        compared.add(
            "kernel", [&] { kernel = functions::min_max<float>(first).greatest.value; },
            [&] { return kernel == loop; });
    }
    const std::vector<float> flat(n * n, 3.0f);
    const dm::image<const float> even{flat.data(), n, n};
    {
        const functions::radial_grid grid{n / 2, n / 2, 1, 1};
        std::vector<float> profile(static_cast<std::size_t>(functions::radial_length(grid, {n, n, 1})));
        bench::comparison{"RadialSurvey", count}.add(
            "kernel",
            [&] {
                functions::radial_survey<float, float>(even, grid, {profile.data(), std::ssize(profile)});
            },
            [&] { return std::all_of(profile.begin(), profile.end(), [](float v) { return v == 3; }); });
    }
    functions::position centre{0, 0};
    bench::comparison{"GetCenterOfMass, 1 cycle", count}.add(
        "kernel",
        [&] {
            centre = {0, 0};
            functions::center_of_mass<float>(even, centre, {std::numeric_limits<double>::infinity(), 1, 0});
        },
        [&] { return centre.x == double(n - 1) / 2; });
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        survey<float>("float");
        survey<double>("double");
        survey<std::uint16_t>("uint16");
        survey<std::int32_t>("int32");
        others();
    });
}
