#include "library/survey.h"

#include <cmath>

namespace qorv::library {

template <class T>
survey_record survey_plain(const dm::image<const T>& image)
{
    survey_record record;
    record.count = image.size();
    const std::ptrdiff_t step = image.strides()[0];
    for (std::ptrdiff_t z = 0; z < image.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < image.height(); ++y) {
            const T* row = image.row(y, z);
            for (std::ptrdiff_t x = 0; x < image.width(); ++x) {
                const auto v = static_cast<double>(row[x * step]);
                record.minimum = v < record.minimum ? v : record.minimum;
                record.maximum = v > record.maximum ? v : record.maximum;
                record.sum += v;
                record.sum_of_squares += v * v;
                record.sum_of_absolutes += std::abs(v);
            }
        }
    return record;
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

}  // namespace qorv::library
