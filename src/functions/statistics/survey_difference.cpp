#include "functions/statistics/survey_difference.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "image/errors.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

/// The sums for even and odd columns. The result is defined by two partial sums, so this is a pair of doubles of the
/// compiler's vector type, not a vector whose length depends on the instruction set.
using pair = double __attribute__((vector_size(16)));

pair absolute_of(pair v) { return v < 0.0 ? -v : v; }

struct paired_sums
{
    pair sum1{}, square1{}, sum2{}, square2{}, difference{}, square{}, absolute{};

    void add(pair a, pair b)
    {
        const pair d = a - b;
        sum1 += a;
        square1 += a * a;
        sum2 += b;
        square2 += b * b;
        difference += d;
        square += d * d;
        absolute += absolute_of(d);
    }

    difference_survey joined() const
    {
        const auto total = [](pair p) { return p[0] + p[1]; };
        return {total(sum1),       total(square1), total(sum2),    total(square2),
                total(difference), total(square),  total(absolute)};
    }
};

template <class T, class Step>
void add_row(paired_sums& sums, std::ptrdiff_t width, const T* a, Step a_step, const T* b, Step b_step)
{
    paired_sums row = sums;  // a local copy stays in registers
    const auto at = [](const T* p, std::ptrdiff_t i) { return static_cast<double>(p[i]); };
    std::ptrdiff_t x = 0;
    for (; x + 1 < width; x += 2)
        row.add(pair{at(a, x * a_step), at(a, (x + 1) * a_step)}, pair{at(b, x * b_step), at(b, (x + 1) * b_step)});
    if (x < width) row.add(pair{at(a, x * a_step), 0.0}, pair{at(b, x * b_step), 0.0});
    sums = row;
}

}  // namespace

template <class T>
difference_survey survey_difference(const dm::image<const T>& first, const dm::image<const T>& second)
{
    dm::require(first.sizes() == second.sizes(), dm::errors::different_size);
    constexpr std::integral_constant<std::ptrdiff_t, 1> unit;
    const std::ptrdiff_t step1 = first.strides()[0], step2 = second.strides()[0];
    paired_sums sums;
    for (std::ptrdiff_t z = 0; z < first.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < first.height(); ++y) {
            const T *a = first.row(y, z), *b = second.row(y, z);
            if (step1 == 1 && step2 == 1)
                add_row(sums, first.width(), a, unit, b, unit);
            else
                add_row(sums, first.width(), a, step1, b, step2);
        }
    return sums.joined();
}

#define INSTANTIATE(T) \
    template difference_survey survey_difference(const dm::image<const T>&, const dm::image<const T>&)
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
