#include "functions/smoothing/moving_average.h"

#include "functions/smoothing/box_pass.h"
#include "functions/smoothing/box_slice.h"
#include "image/errors.h"
#include "image/overlap.h"

#include <algorithm>

namespace qorv::functions {

namespace {

template <class T>
void require_data(const dm::image<const T>& from, const dm::image<T>& to)
{
    dm::require(from.data() && to.data(), dm::errors::parameters_invalid);
}

template <class T>
void copy_planes(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t planes)
{
    for (std::ptrdiff_t z = 0; z < planes; ++z)
        for (std::ptrdiff_t y = 0; y < from.height(); ++y)
            for (std::ptrdiff_t x = 0; x < from.width(); ++x) to(x, y, z) = from(x, y, z);
}

/// The pass along an axis. It does nothing with a radius below 1 or fewer than two samples along the axis.
template <class T>
prepared_filter pass_along(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    require_data(from, to);
    if (radius < 1 || from.sizes()[static_cast<int>(along)] < 2) return [] {};
    return dm::choose(box_pass_variants<T>()).function(from, to, along, radius);
}

/// X, then Y, then Z; each pass after the first works on the destination.
template <class T>
void average_in_place(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t radius)
{
    const prepared_filter passes[] = {pass_along(from, to, axis::x, radius), pass_along<T>(to, to, axis::y, radius),
                                      pass_along<T>(to, to, axis::z, radius)};
    for (const prepared_filter& pass : passes) pass();
}

}  // namespace

template <class T>
void moving_average(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to, std::ptrdiff_t radius)
{
    require_data(from, to);
    dm::require(radius >= 0, dm::errors::parameters_invalid);
    const std::ptrdiff_t planes = std::min(from.depth(), to.depth());
    if (radius == 0) {  // a running sum would spread a NaN and lose the sign of a zero
        if (!dm::same_pixels(from, to)) copy_planes(from, to, planes);
        return;
    }
    if (dm::overlap(from, to)) return average_in_place(from, to, radius);

    const dm::image<T> written{to.data(), {to.width(), to.height(), planes}, to.strides()};
    const prepared_filter planewise = dm::choose(box_slice_variants<T>()).function(from, written, radius);
    const prepared_filter along_z = pass_along<T>(written, written, axis::z, radius);
    planewise();
    along_z();
}

template <class T>
void moving_average_x(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius)
{
    pass_along(from, to, axis::x, radius)();
}

template <class T>
void moving_average_y(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius)
{
    pass_along(from, to, axis::y, radius)();
}

template <class T>
void moving_average_z(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius)
{
    pass_along(from, to, axis::z, radius)();
}

template <class T>
void moving_average2(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& mean,
                     const dm::image<T>& squares, std::ptrdiff_t radius)
{
    require_data(from, mean);
    require_data(from, squares);
    dm::require(radius >= 0, dm::errors::parameters_invalid);
    const dm::image<const T> source = from.plane(0);
    const dm::image<T> first = mean.plane(0), second = squares.plane(0);
    const bool apart = !dm::overlap(source, first) && !dm::overlap(source, second) && !dm::overlap(first, second);
    dm::require(apart, dm::errors::out_of_place);
    dm::choose(box_slice2_variants<T>()).function(source, first, second, radius);
}

#define INSTANTIATE(T)                                                                                    \
    template void moving_average<T>(const dm::image<const T>&, const dm::image<T>&, std::ptrdiff_t);      \
    template void moving_average_x<T>(const dm::image<const T>&, const dm::image<T>&, std::ptrdiff_t);    \
    template void moving_average_y<T>(const dm::image<const T>&, const dm::image<T>&, std::ptrdiff_t);    \
    template void moving_average_z<T>(const dm::image<const T>&, const dm::image<T>&, std::ptrdiff_t);    \
    template void moving_average2<T>(const dm::image<const T>&, const dm::image<T>&, const dm::image<T>&, \
                                     std::ptrdiff_t)
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
