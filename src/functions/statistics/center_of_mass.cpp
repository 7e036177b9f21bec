#include "functions/statistics/center_of_mass.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "image/errors.h"
#include "image/interruption.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

using dm::image;

/// The integers within `reach` of `middle`, limited to 0 .. size - 1.
struct range
{
    range(double middle, double reach, std::ptrdiff_t size)
    {
        const auto most =
            static_cast<double>(size);  // limited before the conversion, because the start may be far outside
        first = static_cast<std::ptrdiff_t>(std::ceil(std::clamp(middle - reach, 0.0, most)));
        last = static_cast<std::ptrdiff_t>(std::floor(std::clamp(middle + reach, -1.0, most - 1)));
    }
    std::ptrdiff_t first, last;
};

struct moments
{
    double mass = 0, x = 0, y = 0;
};

template <class T>
moments moments_within(const image<const T>& source, const position& center, const mass_search& how)
{
    moments all;
    const range rows{center.y, how.radius, source.height()};
    for (std::ptrdiff_t y = rows.first; y <= rows.last; ++y) {
        const double dy = static_cast<double>(y) - center.y;
        // Rounding can make the square slightly negative at the top and the bottom of the disc.
        const double reach =
            std::isinf(how.radius) ? how.radius : std::sqrt(std::max(0.0, how.radius * how.radius - dy * dy));
        const range columns{center.x, reach, source.width()};
        double mass = 0, moment = 0;
        for (std::ptrdiff_t x = columns.first; x <= columns.last; ++x) {
            const double excess = static_cast<double>(source(x, y)) - how.threshold;
            const double weight = excess > 0 ? excess : 0.0;  // 0 for a NaN, too
            mass += weight;
            moment += weight * static_cast<double>(x);
        }
        all.mass += mass;
        all.x += moment;
        all.y += mass * static_cast<double>(y);
    }
    return all;
}

}  // namespace

template <class T>
std::int32_t center_of_mass(const image<const T>& source, position& center, const mass_search& how)
{
    dm::require(source.depth() == 1, dm::errors::invalid_image_size);
    dm::require(how.radius > 0 && how.most_cycles >= 1 && std::isfinite(how.threshold) && std::isfinite(center.x) &&
                    std::isfinite(center.y),
                dm::errors::parameters_invalid);
    position current = center;
    for (std::int32_t cycle = 1; cycle <= how.most_cycles; ++cycle) {
        dm::stop_if_interrupted();
        const moments found = moments_within(source, current, how);
        if (!(found.mass > 0) || !std::isfinite(found.mass)) return 0;
        const position next{found.x / found.mass, found.y / found.mass};
        // The same pixels give the same sums to the bit, so the comparison needs no tolerance.
        const bool converged = next.x == current.x && next.y == current.y;
        current = next;
        if (converged || cycle == how.most_cycles) {
            center = current;
            return cycle;
        }
    }
    return 0;
}

#define INSTANTIATE(T) template std::int32_t center_of_mass(const image<const T>&, position&, const mass_search&)
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
