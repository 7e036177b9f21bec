#include "functions/statistics/survey.h"

#include <emmintrin.h>
#include <cmath>

namespace qorv::functions {

namespace {

/// Sums of two lanes.
struct lane_sums
{
    __m128d sum = _mm_setzero_pd(), squares = _mm_setzero_pd(), absolutes = _mm_setzero_pd();

    void add(__m128d v)
    {
        sum = sum + v;
        squares = squares + v * v;
        absolutes = absolutes + _mm_andnot_pd(_mm_set1_pd(-0.0), v);
    }
    static double total(__m128d v) { return _mm_cvtsd_f64(v) + _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }
};

/// The smallest and the largest so far in each lane; the instructions keep their second operand when one is NaN.
struct float_range
{
    __m128 minimum = _mm_set1_ps(std::numeric_limits<float>::max());
    __m128 maximum = _mm_set1_ps(-std::numeric_limits<float>::max());

    void add(__m128 v)
    {
        minimum = _mm_min_ps(v, minimum);
        maximum = _mm_max_ps(v, maximum);
    }
    void store(float (&low)[4], float (&high)[4]) const
    {
        _mm_storeu_ps(low, minimum);
        _mm_storeu_ps(high, maximum);
    }
};
struct double_range
{
    __m128d minimum = _mm_set1_pd(std::numeric_limits<double>::max());
    __m128d maximum = _mm_set1_pd(-std::numeric_limits<double>::max());

    void add(__m128d v)
    {
        minimum = _mm_min_pd(v, minimum);
        maximum = _mm_max_pd(v, maximum);
    }
    void store(double (&low)[2], double (&high)[2]) const
    {
        _mm_storeu_pd(low, minimum);
        _mm_storeu_pd(high, maximum);
    }
};

/// Takes four pixels; two sets of sums, so that no addition waits for the one before.
void add_four(const float* pixels, float_range& range, lane_sums& even, lane_sums& odd)
{
    const __m128 v = _mm_loadu_ps(pixels);
    range.add(v);
    even.add(_mm_cvtps_pd(v));
    odd.add(_mm_cvtps_pd(_mm_movehl_ps(v, v)));
}
void add_four(const double* pixels, double_range& range, lane_sums& even, lane_sums& odd)
{
    const __m128d first = _mm_loadu_pd(pixels), second = _mm_loadu_pd(pixels + 2);
    range.add(first);
    range.add(second);
    even.add(first);
    odd.add(second);
}

void merge(survey_record& record, double low, double high)
{
    record.minimum = low < record.minimum ? low : record.minimum;
    record.maximum = high > record.maximum ? high : record.maximum;
}

template <class T, class Range>
void survey_row(survey_record& record, const T* row, std::ptrdiff_t width)
{
    Range range;
    lane_sums even, odd;
    std::ptrdiff_t x = 0;
    for (; x + 4 <= width; x += 4) add_four(row + x, range, even, odd);

    constexpr int lanes = 16 / sizeof(T);
    T low[lanes], high[lanes];
    range.store(low, high);
    for (int i = 0; i < lanes; ++i) merge(record, static_cast<double>(low[i]), static_cast<double>(high[i]));
    record.sum += lane_sums::total(even.sum + odd.sum);
    record.sum_of_squares += lane_sums::total(even.squares + odd.squares);
    record.sum_of_absolutes += lane_sums::total(even.absolutes + odd.absolutes);
    for (; x < width; ++x) {
        const auto v = static_cast<double>(row[x]);
        merge(record, v, v);
        record.sum += v;
        record.sum_of_squares += v * v;
        record.sum_of_absolutes += std::abs(v);
    }
}

template <class T, class Range>
survey_record survey_rows(const dm::image<const T>& image)
{
    if (image.strides()[0] != 1) return survey_plain<T>(image);
    survey_record record;
    record.count = image.size();
    if (record.count == 0) return record;
    for (std::ptrdiff_t z = 0; z < image.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < image.height(); ++y)
            survey_row<T, Range>(record, image.row(y, z), image.width());
    return record;
}

}  // namespace

survey_record survey_sse(const dm::image<const float>& image) { return survey_rows<float, float_range>(image); }
survey_record survey_sse(const dm::image<const double>& image) { return survey_rows<double, double_range>(image); }

}  // namespace qorv::functions
