#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "bench.h"
#include "functions/statistics/center_of_mass.h"
#include "functions/statistics/min_max.h"
#include "functions/statistics/radial_survey.h"
#include "functions/statistics/survey_difference.h"

namespace {

using namespace qorv;

/// The seven sums in one plain loop: the reference of the ratios.
functions::difference_survey plain_survey(const std::vector<float>& a, const std::vector<float>& b)
{
    functions::difference_survey s;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double u = a[i], v = b[i], d = u - v;
        s.sum1 += u, s.square_sum1 += u * u, s.sum2 += v, s.square_sum2 += v * v;
        s.difference_sum += d, s.difference_square_sum += d * d, s.difference_absolute_sum += std::fabs(d);
    }
    return s;
}

void run(std::ptrdiff_t size)
{
    std::mt19937 random{1};
    std::vector<float> a(static_cast<std::size_t>(size * size)), b(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = static_cast<float>(random() % 1000003), b[i] = 1000.0f - a[i];
    const dm::image<const float> first{a.data(), size, size}, second{b.data(), size, size};
    const auto pixels = static_cast<double>(a.size());
    const std::string at = size == 512 ? " float 512" : " float 2048";

    const auto expected = plain_survey(a, b);
    bench::check(std::fabs(functions::survey_difference<float>(first, second).difference_square_sum /
                               expected.difference_square_sum -
                           1) < 1e-10,
                 "survey difference");
    volatile double keep = 0;
    const auto plain = bench::measure(pixels, [&] { keep = plain_survey(a, b).sum1; });
    bench::print("SurveyDifference" + at, "plain loop", plain);
    bench::print("SurveyDifference" + at, "kernel",
                 bench::measure(pixels, [&] { keep = functions::survey_difference<float>(first, second).sum1; }),
                 plain.median_ns);

    bench::check(functions::min_max<float>(first).greatest.value == *std::max_element(a.begin(), a.end()), "max");
    const auto two = bench::measure(pixels, [&] { keep = *std::minmax_element(a.begin(), a.end()).first; });
    bench::print("MinMax" + at, "minmax_element", two);
    bench::print("MinMax" + at, "kernel",
                 bench::measure(pixels, [&] { keep = functions::min_max<float>(first).smallest.value; }),
                 two.median_ns);

    const functions::radial_grid grid{size / 2, size / 2, 1, 1};
    const std::ptrdiff_t length = functions::radial_length(grid, {size, size, 1});
    std::vector<float> flat(a.size(), 3.0f), profile(static_cast<std::size_t>(length));
    const auto survey = [&](const std::vector<float>& from) {
        functions::radial_survey<float, float>({from.data(), size, size}, grid, {profile.data(), length});
    };
    survey(flat);
    bench::check(std::all_of(profile.begin(), profile.end(), [](float v) { return v == 3; }), "radial survey");
    bench::print("RadialSurvey" + at, "kernel", bench::measure(pixels, [&] { survey(a); }));

    functions::position center{0, 0};
    functions::center_of_mass<float>({flat.data(), size, size}, center, {INFINITY, 1, 0});
    bench::check(center.x == static_cast<double>(size - 1) / 2, "center of mass");
    bench::print("GetCenterOfMass, 1 cycle" + at, "kernel", bench::measure(pixels, [&] {
                     center = {0, 0};
                     functions::center_of_mass<float>(first, center, {INFINITY, 1, 0});
                 }));
}

}  // namespace

int main()
{
    for (const std::ptrdiff_t size : {512, 2048}) run(size);
}
