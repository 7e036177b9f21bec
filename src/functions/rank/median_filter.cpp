#include "functions/rank/median_filter.h"

#include "functions/rank/median_window.h"
#include "image/errors.h"
#include "image/overlap.h"

namespace qorv::functions {

template <class T>
void median_plain(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                  const dm::image<T>& destination)
{
    std::vector<T> window;
    for (std::ptrdiff_t y = 0; y < source.height(); ++y)
        if (outside == padding::none && y > 0 &&
            window_around(y, radius, source.height()) == window_around(y - 1, radius, source.height()))
            for (std::ptrdiff_t x = 0; x < source.width(); ++x) destination(x, y) = destination(x, y - 1);
        else
            median_stretch(source, radius, outside, destination, y, 0, source.width(), window);
}

template <class T>
void median_filter(const dm::image<const T>& source, std::int32_t radius, padding outside,
                   const dm::image<T>& destination)
{
    dm::require(source.data() != nullptr && destination.data() != nullptr && radius >= 0,
                dm::errors::parameters_invalid);
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    dm::require(outside == padding::none || side * side <= std::vector<T>().max_size(), vector_too_long);
    dm::require(source.width() == destination.width() && source.height() == destination.height(),
                dm::errors::different_size);
    dm::require(!dm::overlap(source, destination), dm::errors::out_of_place);

    const auto& filter = dm::choose(median_variants<T>);
    const std::ptrdiff_t planes = std::min(source.depth(), destination.depth());
    for (std::ptrdiff_t z = 0; z < planes; ++z) filter.function(source.plane(z), radius, outside, destination.plane(z));
}

template median_kernel<float> median_plain<float>;
template median_kernel<double> median_plain<double>;
template void median_filter(const dm::image<const float>&, std::int32_t, padding, const dm::image<float>&);
template void median_filter(const dm::image<const double>&, std::int32_t, padding, const dm::image<double>&);

}  // namespace qorv::functions
