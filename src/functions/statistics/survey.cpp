#include "functions/statistics/survey.h"

#include <cmath>

#include "image/visit.h"

namespace qorv::functions {

template <class T>
survey_record survey_plain(const dm::image<const T>& image)
{
    double minimum = survey_record{}.minimum, maximum = survey_record{}.maximum;
    double sum = 0, squares = 0, absolutes = 0;  // in registers; a record would be written for each pixel
    const std::ptrdiff_t step = image.strides()[0];
    for (std::ptrdiff_t z = 0; z < image.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < image.height(); ++y) {
            const T* row = image.row(y, z);
            for (std::ptrdiff_t x = 0; x < image.width(); ++x) {
                const auto v = static_cast<double>(row[x * step]);
                if (v < minimum) minimum = v;
                if (v > maximum) maximum = v;
                sum += v;
                squares += v * v;
                absolutes += std::abs(v);
            }
        }
    return {image.size(), minimum, maximum, sum, squares, absolutes};
}

namespace {

template <class T>
constexpr dm::variant<survey_kernel<T>> rows[] = {{"plain", dm::cpu::none, survey_plain<T>}};
template <>
constexpr dm::variant<survey_kernel<float>> rows<float>[] = {{"avx2", dm::cpu::avx2, survey_simd<xsimd::avx2, float>},
                                                             {"sse2", dm::cpu::sse2, survey_simd<xsimd::sse2, float>},
                                                             {"plain", dm::cpu::none, survey_plain<float>}};
template <>
constexpr dm::variant<survey_kernel<double>> rows<double>[] = {
    {"avx2", dm::cpu::avx2, survey_simd<xsimd::avx2, double>},
    {"sse2", dm::cpu::sse2, survey_simd<xsimd::sse2, double>},
    {"plain", dm::cpu::none, survey_plain<double>}};

}  // namespace

template <class T>
dm::variants<survey_kernel<T>> survey_variants()
{
    return rows<T>;
}

template <class T>
survey_record survey(const dm::image<const T>& image)
{
    return dm::choose(survey_variants<T>()).function(image);
}

template <class T>
using survey_table = dm::variants<survey_kernel<T>>;

#define INSTANTIATE(T)                             \
    template survey_kernel<T> survey_plain<T>;     \
    template survey_table<T> survey_variants<T>(); \
    template survey_kernel<T> survey<T>
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
