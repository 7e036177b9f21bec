#include "functions/rank/nth_element.h"
#include "functions/rank/rank_key.h"
#include "functions/rank/rank_packs_sse.h"
#include "functions/rank/special_values.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// Selection from a sample: R. W. Floyd, R. L. Rivest, Expected time bounds for selection, CACM 18 (1975) 165-172, with
// the image only read.
namespace qorv::functions {
namespace {

constexpr std::ptrdiff_t few_pixels = 4096;
constexpr std::ptrdiff_t largest_sample = 16384;
constexpr double sample_sigmas = 4.5;  // how often the bracket must be widened: a few times in a million

template <class T>
struct bracket
{
    T low, high;
    bool ordered() const { return low <= high; }  // not with a NaN
};

/// Two values between which the rank very likely lies, from pixels picked evenly, but not at even distances, which a
/// pattern in the image could meet.
template <class T>
bracket<T> sampled_bracket(const dm::image<const T>& values, std::ptrdiff_t rank)
{
    const std::ptrdiff_t step = std::max<std::ptrdiff_t>(values.size() / largest_sample, 8);
    std::vector<rank_key<T>> sample;
    std::uint32_t random = 1;
    for (std::ptrdiff_t start = 0; start + step <= values.size(); start += step) {
        random = random * 1664525u + 1013904223u;  // Numerical Recipes' quick generator; its high bits are used
        const std::ptrdiff_t i = start + std::ptrdiff_t((random >> 8) % std::uint32_t(step));
        const std::ptrdiff_t plane = values.width() * values.height();
        sample.push_back(key_of(values(i % values.width(), i % plane / values.width(), i / plane)));
    }

    const auto count = static_cast<double>(sample.size());
    const double share = static_cast<double>(rank) / static_cast<double>(values.size());
    const double spread = sample_sigmas * std::sqrt(count * share * (1 - share)) + 2;
    const double low = std::floor(share * count - spread);
    const double high = std::ceil(share * count + spread);
    const auto at = [&](double index) {
        const auto place = sample.begin() + static_cast<std::ptrdiff_t>(index);
        std::nth_element(sample.begin(), place, sample.end());
        return value_of<T>(*place);
    };
    constexpr T infinity = std::numeric_limits<T>::infinity();
    return {low < 0 ? -infinity : at(low), high >= count ? infinity : at(high)};
}

/// What one pass over the image finds out.
template <class T>
struct parted
{
    std::int64_t below = 0;      ///< values < low
    std::int64_t up_to_low = 0;  ///< values <= low
    std::vector<T> inside;       ///< values strictly between
    bool nan = false;
};

template <class T>
void part_row(const T* row, std::ptrdiff_t width, const bracket<T>& limits, parted<T>& parts)
{
    using P = pack<T>;
    const P low = P::all(limits.low);
    const P high = P::all(limits.high);
    P nan = less(low, low);
    __m128i below = _mm_setzero_si128();
    __m128i up_to_low = _mm_setzero_si128();
    std::ptrdiff_t x = 0;
    for (; x + P::lanes <= width; x += P::lanes) {
        const P v = P::load(row + x);
        nan = either(nan, has_nan(v));
        below = less(v, low).tally(below);
        const P not_above_low = less_equal(v, low);
        up_to_low = not_above_low.tally(up_to_low);
        const unsigned inside = but_not(less(v, high), not_above_low).mask();
        if (inside != 0)
            for (std::ptrdiff_t i = 0; i < P::lanes; ++i)
                if (inside >> i & 1) parts.inside.push_back(row[x + i]);
    }
    parts.below += P::total(below);
    parts.up_to_low += P::total(up_to_low);
    parts.nan = parts.nan || nan.mask() != 0;
    for (; x < width; ++x) {
        parts.nan = parts.nan || row[x] != row[x];
        parts.below += row[x] < limits.low;
        parts.up_to_low += row[x] <= limits.low;
        if (row[x] > limits.low && row[x] < limits.high) parts.inside.push_back(row[x]);
    }
}

/// Calls f(row) for each row of each plane.
template <class T, class F>
void each_row(const dm::image<const T>& values, F&& f)
{
    for (std::ptrdiff_t z = 0; z < values.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < values.height(); ++y) f(values.row(y, z));
}

template <class T>
std::int64_t count_equal(const dm::image<const T>& values, T wanted)
{
    std::int64_t count = 0;
    each_row(values, [&](const T* row) { count += std::count(row, row + values.width(), wanted); });
    return count;
}

template <class T>
bool has_special(const dm::image<const T>& values)
{
    bool found = false;
    each_row(values, [&](const T* row) { found = found || any_special(row, values.width()); });
    return found;
}

/// Widens the bracket until the ranks from `first` to `last` are in it. False if there is a NaN.
template <class T>
bool part(const dm::image<const T>& values, std::int64_t first, std::int64_t last, bracket<T>& limits, parted<T>& parts)
{
    for (;;) {
        parts = {};
        each_row(values, [&](const T* row) { part_row(row, values.width(), limits, parts); });
        if (parts.nan) return false;
        const std::int64_t below_high = parts.up_to_low + static_cast<std::int64_t>(parts.inside.size());
        if (first < parts.below)
            limits.low = -std::numeric_limits<T>::infinity();
        else if (last >= below_high && last >= below_high + count_equal(values, limits.high))
            limits.high = std::numeric_limits<T>::infinity();
        else
            return true;
    }
}

template <class T>
T value_at(std::int64_t rank, const bracket<T>& limits, parted<T>& parts)
{
    if (rank < parts.up_to_low) return limits.low;
    const std::int64_t index = rank - parts.up_to_low;
    if (index >= static_cast<std::int64_t>(parts.inside.size())) return limits.high;
    const auto place = parts.inside.begin() + index;
    std::nth_element(parts.inside.begin(), place, parts.inside.end());
    return *place;
}

}  // namespace

template <class T>
ranked<T> rank_vector(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also)
{
    const auto plain = [&] { return rank_plain<T>(values, rank, also); };
    if (values.size() < few_pixels || (values.strides()[0] != 1 && values.width() > 1)) return plain();
    bracket<T> limits = sampled_bracket(values, rank);
    parted<T> parts;
    const std::ptrdiff_t first = also == neighbour::before ? rank - 1 : rank;
    if (!limits.ordered() || !part<T>(values, first, rank, limits, parts)) return plain();
    const T at = value_at(rank, limits, parts);
    const T before = value_at(first, limits, parts);
    if ((at == 0 || before == 0) && has_special(values)) return plain();
    return {at, also == neighbour::before ? before : T(0)};
}

template rank_kernel<float> rank_vector<float>;
template rank_kernel<double> rank_vector<double>;

}  // namespace qorv::functions
