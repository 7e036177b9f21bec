#include "functions/statistics/min_max.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>

#include "image/visit.h"

namespace qorv::functions {
namespace {

using dm::image;

/// Calls `work(step)` with the distance between neighbours in a row: a compile-time 1 for a contiguous row, so that the
/// compiler can vectorise the loop, a number for a strided one.
template <class Work>
decltype(auto) with_step(std::ptrdiff_t step, Work&& work)
{
    if (step == 1) return std::forward<Work>(work)(std::integral_constant<std::ptrdiff_t, 1>{});
    return std::forward<Work>(work)(step);
}

template <class T, class Better>
constexpr T worst()
{
    using limits = std::numeric_limits<T>;
    if constexpr (limits::has_infinity)
        return Better{}(T{0}, T{1}) ? limits::infinity() : -limits::infinity();
    else
        return Better{}(T{0}, T{1}) ? limits::max() : limits::min();
}

/// The best element of a row. "better ? element : best" is what the vector instructions compute; it ignores NaNs.
template <class T, class Better, class Step>
T best_of_row(const T* row, std::ptrdiff_t width, Step step)
{
    constexpr std::ptrdiff_t lanes = 64 / sizeof(T);
    T best[lanes];
    for (T& lane : best) lane = worst<T, Better>();
    std::ptrdiff_t x = 0;
    for (; x + lanes <= width; x += lanes)
        for (std::ptrdiff_t lane = 0; lane < lanes; ++lane) {
            const T element = row[(x + lane) * step];
            best[lane] = Better{}(element, best[lane]) ? element : best[lane];
        }
    for (; x < width; ++x)
        if (Better{}(row[x * step], best[0])) best[0] = row[x * step];
    for (const T lane : best)
        if (Better{}(lane, best[0])) best[0] = lane;
    return best[0];
}

/// Searches row after row. The position of a row's best element is searched only when it is better than all rows
/// before.
template <class T, class Better>
class search
{
  public:
    explicit search(const image<const T>& source) : source_{source} {}

    void row(std::ptrdiff_t y, std::ptrdiff_t z)
    {
        const T* const elements = source_.row(y, z);
        with_step(source_.strides()[0], [&](auto step) {
            const T candidate = best_of_row<T, Better>(elements, source_.width(), step);
            if (found_ && !Better{}(candidate, best_)) return;
            for (std::ptrdiff_t x = 0; x < source_.width(); ++x)
                if (elements[x * step] == candidate)  // nowhere in a row of NaNs
                {
                    best_ = elements[x * step];
                    x_ = x, y_ = y, z_ = z;
                    found_ = true;
                    return;
                }
        });
    }

    extremum result() const
    {
        return {found_ ? static_cast<double>(best_) : std::numeric_limits<double>::quiet_NaN(),
                static_cast<std::int32_t>(x_), static_cast<std::int32_t>(y_), static_cast<std::int32_t>(z_)};
    }

  private:
    const image<const T>& source_;
    T best_{};
    bool found_ = false;
    std::ptrdiff_t x_ = 0, y_ = 0, z_ = 0;
};

template <class T, class... Searches>
void visit_rows(const image<const T>& source, Searches&... searches)
{
    for (std::ptrdiff_t z = 0; z < source.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) (searches.row(y, z), ...);
}

}  // namespace

template <class T>
extrema min_max(const image<const T>& source)
{
    search<T, std::less<>> smallest{source};
    search<T, std::greater<>> greatest{source};
    visit_rows(source, smallest, greatest);
    return {smallest.result(), greatest.result()};
}

template <class T>
extremum min_of(const image<const T>& source)
{
    search<T, std::less<>> smallest{source};
    visit_rows(source, smallest);
    return smallest.result();
}

template <class T>
extremum max_of(const image<const T>& source)
{
    search<T, std::greater<>> greatest{source};
    visit_rows(source, greatest);
    return greatest.result();
}

#define INSTANTIATE(T)                               \
    template extrema min_max(const image<const T>&); \
    template extremum min_of(const image<const T>&); \
    template extremum max_of(const image<const T>&)
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
