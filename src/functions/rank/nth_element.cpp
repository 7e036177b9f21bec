#include "functions/rank/nth_element.h"

#include "image/errors.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace qorv::functions {
namespace {

/// Puts the smallest of the three at lo and the middle one at hi - 1; no value at lo is then greater than the pivot,
/// not even with a NaN among them, so that the scans below cannot leave the range.
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

/// All pixels in the order x, y, z.
template <class T>
std::vector<T> copy_of(const dm::image<const T>& values)
{
    std::vector<T> copy;
    copy.reserve(static_cast<std::size_t>(values.size()));
    for (std::ptrdiff_t z = 0; z < values.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < values.height(); ++y)
            for (std::ptrdiff_t x = 0; x < values.width(); ++x) copy.push_back(values(x, y, z));
    return copy;
}

}  // namespace

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
T median_of(T* first, T* last)
{
    const std::ptrdiff_t count = last - first;
    const T middle = select(first, last, count / 2);
    return count % 2 != 0 ? middle : (select(first, last, count / 2 - 1) + middle) * T(0.5);
}

template <class T>
ranked<T> rank_plain(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also)
{
    auto copy = copy_of(values);
    T* const first = copy.data();
    ranked<T> found{};
    found.at = select(first, first + copy.size(), rank);
    if (also == neighbour::before) found.before = select(first, first + copy.size(), rank - 1);
    return found;
}

template <class T>
T nth_element(const dm::image<const T>& values, std::ptrdiff_t n)
{
    dm::require(values.data() != nullptr && n >= 0 && n < values.size(), dm::errors::parameters_invalid);
    return dm::choose(rank_variants<T>).function(values, n, neighbour::none).at;
}

template <class T>
T median(const dm::image<const T>& values)
{
    dm::require(values.data() != nullptr && values.size() > 0, dm::errors::parameters_invalid);
    const std::ptrdiff_t count = values.size();
    const auto also = count % 2 != 0 ? neighbour::none : neighbour::before;
    const auto found = dm::choose(rank_variants<T>).function(values, count / 2, also);
    return also == neighbour::none ? found.at : (found.before + found.at) * T(0.5);
}

template float select(float*, float*, std::ptrdiff_t);
template double select(double*, double*, std::ptrdiff_t);
template float median_of(float*, float*);
template double median_of(double*, double*);
template rank_kernel<float> rank_plain<float>;
template rank_kernel<double> rank_plain<double>;
template float nth_element(const dm::image<const float>&, std::ptrdiff_t);
template double nth_element(const dm::image<const double>&, std::ptrdiff_t);
template float median(const dm::image<const float>&);
template double median(const dm::image<const double>&);

}  // namespace qorv::functions
