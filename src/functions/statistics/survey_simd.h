#pragma once

#include <xsimd/xsimd.hpp>

#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <type_traits>

#include "functions/statistics/survey.h"
#include "image/lanes_simd.h"

/// The survey with one accumulator for each lane, joined at the end of every row.
namespace qorv::functions {
namespace lane_survey {

/// The three sums, in double precision.
template <class Arch>
struct sums
{
    using vec = xsimd::batch<double, Arch>;
    vec sum = vec(0.0), squares = vec(0.0), absolutes = vec(0.0);

    void add(vec v)
    {
        sum = sum + v;
        squares = squares + v * v;
        absolutes = absolutes + xsimd::abs(v);
    }
};

/// The smallest and the largest value of each lane, in the precision of the image. min and max return their second
/// operand when one is NaN.
template <class Arch, class T>
struct range
{
    using vec = xsimd::batch<T, Arch>;
    vec minimum = vec(std::numeric_limits<T>::max()), maximum = vec(-std::numeric_limits<T>::max());

    void add(vec v)
    {
        minimum = xsimd::min(v, minimum);
        maximum = xsimd::max(v, maximum);
    }
};

template <class Arch>
double total(xsimd::batch<double, Arch> v)
{
    double lanes[xsimd::batch<double, Arch>::size];
    v.store_unaligned(lanes);
    double sum = lanes[0];
    for (std::size_t i = 1; i < std::size(lanes); ++i) sum += lanes[i];
    return sum;
}

template <class Arch>
void merge(survey_record& record, double low, double high)
{
    record.minimum = low < record.minimum ? low : record.minimum;
    record.maximum = high > record.maximum ? high : record.maximum;
}

template <class Arch, class T>
void add_row(survey_record& record, const T* row, std::ptrdiff_t width)
{
    using wide = xsimd::batch<double, Arch>;
    using vec = typename range<Arch, T>::vec;
    constexpr std::ptrdiff_t half = wide::size, step = 2 * half;  // two sets of sums hide the additions' latency
    range<Arch, T> extremes;
    sums<Arch> even, odd;
    std::ptrdiff_t x = 0;
    for (; x + step <= width; x += step)
        if constexpr (std::is_same_v<T, float>) {
            const auto pixels = vec::load_unaligned(row + x);
            extremes.add(pixels);
            even.add(dm::simd::widened_low(pixels));
            odd.add(dm::simd::widened_high(pixels));
        } else {
            const auto first = vec::load_unaligned(row + x), second = vec::load_unaligned(row + x + half);
            extremes.add(first);
            extremes.add(second);
            even.add(first);
            odd.add(second);
        }
    T low[vec::size], high[vec::size];
    extremes.minimum.store_unaligned(low);
    extremes.maximum.store_unaligned(high);
    for (std::size_t i = 0; i < vec::size; ++i)
        merge<Arch>(record, static_cast<double>(low[i]), static_cast<double>(high[i]));
    record.sum += total(even.sum + odd.sum);
    record.sum_of_squares += total(even.squares + odd.squares);
    record.sum_of_absolutes += total(even.absolutes + odd.absolutes);
    for (; x < width; ++x) {
        const auto v = static_cast<double>(row[x]);
        merge<Arch>(record, v, v);
        record.sum += v;
        record.sum_of_squares += v * v;
        record.sum_of_absolutes += std::abs(v);
    }
}

}  // namespace lane_survey

template <class Arch, class T>
survey_record survey_simd(const dm::image<const T>& image)
{
    if (image.strides()[0] != 1) return survey_plain<T>(image);
    survey_record record;
    record.count = image.size();
    if (record.count == 0) return record;
    for (std::ptrdiff_t z = 0; z < image.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < image.height(); ++y)
            lane_survey::add_row<Arch>(record, image.row(y, z), image.width());
    return record;
}

}  // namespace qorv::functions
