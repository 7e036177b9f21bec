#include "functions/smoothing/gaussian.h"

#include "image/errors.h"

#include <algorithm>
#include <cmath>

namespace qorv::functions {

namespace {

/// The renormalised weighted mean around sample i of a line.
template <class T>
double weighted_mean(const T* line, std::ptrdiff_t step, std::ptrdiff_t n, std::ptrdiff_t i,
                     const std::vector<double>& weights)
{
    double sum = weights[0] * line[i * step], weight = weights[0];
    for (std::ptrdiff_t k = 1; k < static_cast<std::ptrdiff_t>(weights.size()); ++k) {
        if (i - k >= 0) {
            sum += weights[k] * line[(i - k) * step];
            weight += weights[k];
        }
        if (i + k < n) {
            sum += weights[k] * line[(i + k) * step];
            weight += weights[k];
        }
    }
    return sum / weight;
}

}  // namespace

std::vector<double> gaussian_weights(double sigma, std::int32_t order, std::ptrdiff_t limit)
{
    // Compared before it is narrowed: the length can be beyond every integer, or NaN for order 0 of an infinite sigma.
    const float length = std::ceil(static_cast<float>(order) * static_cast<float>(sigma) + 1.0f);
    const std::ptrdiff_t n = static_cast<double>(length) >= static_cast<double>(limit) ? limit
                             : length > 1.0f ? static_cast<std::ptrdiff_t>(length)
                                             : 1;
    std::vector<double> weights(static_cast<std::size_t>(n), 1.0);
    for (std::ptrdiff_t i = 1; i < n; ++i) {
        const auto distance = static_cast<double>(i);
        weights[i] = std::exp(-(distance * distance) * (1.0 / (2 * sigma * sigma)));
    }
    return weights;
}

template <class T>
void gaussian_plain(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    const std::ptrdiff_t nx = from.width(), ny = from.height();
    std::vector<double> line(static_cast<std::size_t>(std::max(nx, ny)));
    for (std::ptrdiff_t y = 0; y < ny; ++y) {
        for (std::ptrdiff_t x = 0; x < nx; ++x) line[x] = weighted_mean(from.row(y), from.strides()[0], nx, x, weights);
        for (std::ptrdiff_t x = 0; x < nx; ++x) to(x, y) = static_cast<T>(line[x]);
    }
    for (std::ptrdiff_t x = 0; x < nx; ++x) {
        for (std::ptrdiff_t y = 0; y < ny; ++y) line[y] = weighted_mean(&to(x), to.strides()[1], ny, y, weights);
        for (std::ptrdiff_t y = 0; y < ny; ++y) to(x, y) = static_cast<T>(line[y]);
    }
}

template gaussian_kernel<float> gaussian_plain<float>;
template gaussian_kernel<double> gaussian_plain<double>;

template <class T>
void gaussian_blur(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to, double sigma,
                   std::int32_t order)
{
    const bool valid = from.width() > 0 && from.height() > 0 && from.data() && sigma >= 0 && order >= 0 && to.data();
    dm::require(valid, dm::errors::parameters_invalid);
    const auto weights = gaussian_weights(sigma, order, std::max(from.width(), from.height()));
    const auto& kernel = dm::choose(gaussian_variants<T>);
    for (std::ptrdiff_t z = 0; z < std::min(from.depth(), to.depth()); ++z)
        kernel.function(from.plane(z), to.plane(z), weights);
}

template void gaussian_blur<float>(const dm::image<const float>&, const dm::image<float>&, double, std::int32_t);
template void gaussian_blur<double>(const dm::image<const double>&, const dm::image<double>&, double, std::int32_t);

}  // namespace qorv::functions
