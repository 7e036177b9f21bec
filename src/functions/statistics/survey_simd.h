#pragma once

#include <xsimd/xsimd.hpp>

#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <type_traits>

#include "functions/statistics/survey.h"
#include "image/lanes_simd.h"

/// The survey with partial sums that are joined at the end of every row.
namespace qorv::functions {
namespace lane_survey {

/// Partial sums of a row: element i belongs to sum i % parts, as far as the row has whole groups of `step` elements.
/// The numbers do not depend on the instruction set, so that all vector forms give the same bits.
inline constexpr std::ptrdiff_t parts = 4, step = 8;

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

/// The sum of one kind of the partial sums.
template <class Arch, std::size_t n>
double total(const sums<Arch> (&all)[n], xsimd::batch<double, Arch> sums<Arch>::*kind)
{
    double part[parts];
    for (std::size_t i = 0; i < n; ++i) (all[i].*kind).store_unaligned(part + i * sums<Arch>::vec::size);
    return (part[0] + part[2]) + (part[1] + part[3]);
}

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
void merge(survey_record& record, double low, double high)
{
    record.minimum = low < record.minimum ? low : record.minimum;
    record.maximum = high > record.maximum ? high : record.maximum;
}

template <class Arch, class T>
void add_row(survey_record& record, const T* row, std::ptrdiff_t width)
{
    using vec = typename range<Arch, T>::vec;
    constexpr std::ptrdiff_t lanes = vec::size;
    constexpr std::size_t vectors = parts / sums<Arch>::vec::size;
    range<Arch, T> extremes;
    sums<Arch> all[vectors];
    std::size_t next = 0;
    const auto add = [&](auto values) { all[next++ % vectors].add(values); };
    std::ptrdiff_t x = 0;
    for (; x + step <= width; x += step)
#pragma GCC unroll 4
        for (std::ptrdiff_t i = 0; i < step; i += lanes) {
            const auto pixels = vec::load_unaligned(row + x + i);
            extremes.add(pixels);
            if constexpr (std::is_same_v<T, float>) {
                add(dm::simd::widened_low(pixels));
                add(dm::simd::widened_high(pixels));
            } else
                add(pixels);
        }
    T low[vec::size], high[vec::size];
    extremes.minimum.store_unaligned(low);
    extremes.maximum.store_unaligned(high);
    for (std::size_t i = 0; i < vec::size; ++i)
        merge<Arch>(record, static_cast<double>(low[i]), static_cast<double>(high[i]));
    record.sum += total(all, &sums<Arch>::sum);
    record.sum_of_squares += total(all, &sums<Arch>::squares);
    record.sum_of_absolutes += total(all, &sums<Arch>::absolutes);
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
