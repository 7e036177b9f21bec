#include "functions/statistics/survey.h"

#include <cmath>

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

template <class T>
survey_record survey(const dm::image<const T>& image)
{
    return dm::choose(survey_variants<T>).function(image);
}

template survey_kernel<std::int8_t> survey_plain<std::int8_t>;
template survey_kernel<std::uint8_t> survey_plain<std::uint8_t>;
template survey_kernel<std::int16_t> survey_plain<std::int16_t>;
template survey_kernel<std::uint16_t> survey_plain<std::uint16_t>;
template survey_kernel<std::int32_t> survey_plain<std::int32_t>;
template survey_kernel<std::uint32_t> survey_plain<std::uint32_t>;
template survey_kernel<float> survey_plain<float>;
template survey_kernel<double> survey_plain<double>;

template survey_kernel<std::int8_t> survey<std::int8_t>;
template survey_kernel<std::uint8_t> survey<std::uint8_t>;
template survey_kernel<std::int16_t> survey<std::int16_t>;
template survey_kernel<std::uint16_t> survey<std::uint16_t>;
template survey_kernel<std::int32_t> survey<std::int32_t>;
template survey_kernel<std::uint32_t> survey<std::uint32_t>;
template survey_kernel<float> survey<float>;
template survey_kernel<double> survey<double>;

}  // namespace qorv::functions
