#include "functions/rank/median_z.h"

#include "functions/rank/nth_element.h"
#include "image/errors.h"

#include <vector>

namespace qorv::functions {

template <class T>
void median_z_plain(const dm::image<const T>& stack, const dm::image<T>& destination)
{
    for (std::ptrdiff_t y = 0; y < stack.height(); ++y) {
        std::vector<T> column(static_cast<std::size_t>(stack.depth()));
        for (std::ptrdiff_t x = 0; x < stack.width(); ++x) {
            for (std::ptrdiff_t z = 0; z < stack.depth(); ++z) column[static_cast<std::size_t>(z)] = stack(x, y, z);
            destination(x, y) = median_of(column.data(), column.data() + column.size());
        }
    }
}

template <class T>
void median_z(const dm::image<const T>& stack, const dm::image<T>& destination)
{
    dm::require(stack.data() != nullptr && destination.data() != nullptr && stack.size() > 0,
                dm::errors::parameters_invalid);
    dm::require(destination.sizes() == typename dm::image<T>::extents{stack.width(), stack.height(), 1},
                dm::errors::invalid_image_size);
    dm::choose(median_z_variants<T>).function(stack, destination);
}

template median_z_kernel<float> median_z_plain<float>;
template median_z_kernel<double> median_z_plain<double>;
template void median_z(const dm::image<const float>&, const dm::image<float>&);
template void median_z(const dm::image<const double>&, const dm::image<double>&);

}  // namespace qorv::functions
