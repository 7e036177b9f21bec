#include "functions/rank/nth_element.h"

#include "functions/rank/rank_key.h"
#include "functions/rank/special_values.h"
#include "image/errors.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

// The fast form selects from a sample (R. W. Floyd, R. L. Rivest, Expected time bounds for selection, CACM 18 (1975)
// 165-172) and does not reorder the image: two values of a sample bracket the rank, one pass over the image counts the
// values below the bracket, and the rank is selected among the values inside.

namespace xsimd {
struct sse2;
}

namespace qorv::functions {
namespace {

constexpr std::ptrdiff_t few_pixels = 4096;  // not worth a sample
constexpr std::ptrdiff_t largest_sample = 16384;
constexpr double sample_sigmas = 4.5;  // the bracket has to be widened in a few of a million calls

/// Puts the smallest of three elements at lo and the middle one, which is returned, at hi - 1. No element at lo is then
/// greater than the pivot, even with NaN, so that the scans of `select` cannot leave the range.
template <class T>
T place_pivot(T* a, std::ptrdiff_t lo, std::ptrdiff_t hi)
{
    const std::ptrdiff_t mid = lo + (hi - lo) / 2;
    if (a[lo] >= a[mid]) std::swap(a[lo], a[mid]);
    if (a[mid] >= a[hi]) {
        std::swap(a[mid], a[hi]);
        if (a[lo] >= a[mid]) std::swap(a[lo], a[mid]);
    }
    std::swap(a[mid], a[hi - 1]);
    return a[hi - 1];
}

template <class T>
ranked<T> rank_plain(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also)
{
    std::vector<T> copy;
    copy.reserve(static_cast<std::size_t>(values.size()));
    for (std::ptrdiff_t z = 0; z < values.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < values.height(); ++y)
            for (std::ptrdiff_t x = 0; x < values.width(); ++x) copy.push_back(values(x, y, z));
    T* const first = copy.data();
    ranked<T> found{};
    found.at = select(first, first + copy.size(), rank);
    if (also == neighbour::before) found.before = select(first, first + copy.size(), rank - 1);
    return found;
}

template <class T>
struct bracket
{
    T low, high;
    bool ordered() const { return low <= high; }  // false with a NaN
};

/// Two values between which the rank very likely lies. The image is sampled at jittered intervals; regular ones could
/// alias with a periodic image.
template <class T>
bracket<T> sampled_bracket(const dm::image<const T>& values, std::ptrdiff_t rank)
{
    const std::ptrdiff_t step = std::max<std::ptrdiff_t>(values.size() / largest_sample, 8);
    std::vector<rank_key<T>> sample;
    std::uint32_t random = 1;
    for (std::ptrdiff_t start = 0; start + step <= values.size(); start += step) {
        random =
            random * 1664525u + 1013904223u;  // linear congruential, from Numerical Recipes; the high bits are used
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

/// Calls f(row, count) for all pixels, contiguous pieces of at most longest_row.
template <class T, class F>
void for_each_piece(const dm::image<const T>& values, F&& f)
{
    for (std::ptrdiff_t z = 0; z < values.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < values.height(); ++y)
            for (std::ptrdiff_t x = 0; x < values.width(); x += longest_row)
                f(values.row(y, z) + x, std::min(values.width() - x, longest_row));
}

template <class T>
std::int64_t count_equal(const dm::image<const T>& values, T value)
{
    std::int64_t equal = 0;
    for_each_piece(values, [&](const T* row, auto count) { equal += std::count(row, row + count, value); });
    return equal;
}

template <class T>
bool holds_special(const dm::image<const T>& values)
{
    bool found = false;
    for_each_piece(values, [&](const T* row, auto count) { found = found || any_special(row, count); });
    return found;
}

/// The pixels of an image relative to a bracket.
template <class T>
struct partition
{
    row_counts counts;
    std::vector<T> inside;
};

template <class Arch, class T>
partition<T> partition_by(const dm::image<const T>& values, const bracket<T>& limits)
{
    partition<T> all;
    std::vector<T> inside(static_cast<std::size_t>(std::min(values.width(), longest_row)));
    for_each_piece(values, [&](const T* row, auto count) {
        const row_counts counts = count_row<Arch>(row, count, limits.low, limits.high, inside.data());
        all.counts.below += counts.below;
        all.counts.up_to_low += counts.up_to_low;
        all.counts.inside += counts.inside;
        all.counts.nan = all.counts.nan || counts.nan;
        all.inside.insert(all.inside.end(), inside.data(), inside.data() + counts.inside);
    });
    return all;
}

/// Partitions the image, widening the bracket until it holds the ranks from `first` to `last`, or until a NaN is found.
template <class Arch, class T>
partition<T> partition_around(const dm::image<const T>& values, std::int64_t first, std::int64_t last,
                              bracket<T>& limits)
{
    for (;;) {
        auto parts = partition_by<Arch>(values, limits);
        const std::int64_t below_high = parts.counts.up_to_low + parts.counts.inside;
        const bool is_too_high = first < parts.counts.below;
        if (parts.counts.nan ||
            (!is_too_high && (last < below_high || last < below_high + count_equal(values, limits.high))))
            return parts;
        if (is_too_high)
            limits.low = -std::numeric_limits<T>::infinity();
        else
            limits.high = std::numeric_limits<T>::infinity();
    }
}

template <class T>
T value_at(std::int64_t rank, const bracket<T>& limits, partition<T>& parts)
{
    if (rank < parts.counts.up_to_low) return limits.low;
    const std::int64_t index = rank - parts.counts.up_to_low;
    if (index >= parts.counts.inside) return limits.high;
    const auto place = parts.inside.begin() + index;
    std::nth_element(parts.inside.begin(), place, parts.inside.end());
    return *place;
}

/// Falls back on the plain form for images of few pixels, for rows that are not contiguous, and where NaN or -0 decide.
template <class T, class Arch>
ranked<T> rank_fast(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also)
{
    const auto plain = [&] { return rank_plain<T>(values, rank, also); };
    if (values.size() < few_pixels || (values.strides()[0] != 1 && values.width() > 1)) return plain();
    bracket<T> limits = sampled_bracket(values, rank);
    if (!limits.ordered()) return plain();
    const std::ptrdiff_t first = also == neighbour::before ? rank - 1 : rank;
    auto parts = partition_around<Arch>(values, first, rank, limits);
    if (parts.counts.nan) return plain();
    const T at = value_at(rank, limits, parts);
    const T before = value_at(first, limits, parts);
    if ((at == 0 || before == 0) && holds_special(values)) return plain();
    return {at, also == neighbour::before ? before : T(0)};
}

}  // namespace

template <class T>
dm::variants<rank_kernel<T>> rank_variants()
{
    static constexpr dm::variant<rank_kernel<T>> table[] = {{"sse2", dm::cpu::sse2, rank_fast<T, xsimd::sse2>},
                                                            {"plain", dm::cpu::none, rank_plain<T>}};
    return table;
}

template <class T>
T select(T* a, T* last, std::ptrdiff_t k)
{
    std::ptrdiff_t lo = 0;
    std::ptrdiff_t hi = last - a - 1;
    while (lo < hi - 1) {
        const T pivot = place_pivot(a, lo, hi);
        std::ptrdiff_t i = lo;
        std::ptrdiff_t j = hi - 1;
        for (;;) {
            while (pivot > a[++i]) continue;
            while (a[--j] > pivot) continue;
            if (i >= j) break;
            std::swap(a[i], a[j]);
        }
        std::swap(a[pivot > a[j] ? j + 1 : j], a[hi - 1]);
        if (k <= j)
            hi = j;
        else
            lo = i;  // i <= j + 1 <= k
    }
    if (a[lo] > a[hi]) std::swap(a[lo], a[hi]);
    return a[k];
}

template <class T>
T nth_element(const dm::image<const T>& values, std::ptrdiff_t n)
{
    dm::require(values.data() != nullptr && n >= 0 && n < values.size(), dm::errors::parameters_invalid);
    return dm::choose(rank_variants<T>()).function(values, n, neighbour::none).at;
}

template dm::variants<rank_kernel<float>> rank_variants();
template dm::variants<rank_kernel<double>> rank_variants();
template float select(float*, float*, std::ptrdiff_t);
template double select(double*, double*, std::ptrdiff_t);
template float nth_element(const dm::image<const float>&, std::ptrdiff_t);
template double nth_element(const dm::image<const double>&, std::ptrdiff_t);

}  // namespace qorv::functions
