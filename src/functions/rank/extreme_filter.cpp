#include "functions/rank/extreme_filter.h"

#include "functions/rank/extreme_order.h"
#include "functions/rank/extreme_stretch.h"
#include "image/errors.h"
#include "image/overlap.h"

#include <algorithm>

namespace qorv::functions {

template <class T>
void extreme_plain(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                   const dm::image<T>& destination)
{
    const auto all_rows = [&]<class Order>(Order) {
        for (std::ptrdiff_t y = 0; y < source.height(); ++y)
            extreme_stretch<T, Order>(source, radius, destination, y, 0, source.width());
    };
    if (which == extreme::maximum)
        all_rows(largest<T>{});
    else
        all_rows(smallest<T>{});
}

template <class T>
void extreme_filter(const dm::image<const T>& source, extreme which, std::int32_t radius,
                    const dm::image<T>& destination)
{
    dm::require(source.data() != nullptr && destination.data() != nullptr && radius >= 0,
                dm::errors::parameters_invalid);
    dm::require(source.width() == destination.width() && source.height() == destination.height(),
                dm::errors::different_size);
    dm::require(!dm::overlap(source, destination), dm::errors::out_of_place);

    const auto& filter = dm::choose(extreme_variants<T>);
    const std::ptrdiff_t planes = std::min(source.depth(), destination.depth());
    for (std::ptrdiff_t z = 0; z < planes; ++z) filter.function(source.plane(z), which, radius, destination.plane(z));
}

#define INSTANTIATE(T)                           \
    template extreme_kernel<T> extreme_plain<T>; \
    template void extreme_filter(const dm::image<const T>&, extreme, std::int32_t, const dm::image<T>&);
INSTANTIATE(std::int8_t)
INSTANTIATE(std::uint8_t)
INSTANTIATE(std::int16_t)
INSTANTIATE(std::uint16_t)
INSTANTIATE(std::int32_t)
INSTANTIATE(std::uint32_t)
INSTANTIATE(float)
INSTANTIATE(double)
#undef INSTANTIATE

}  // namespace qorv::functions
