#include "functions/smoothing/gaussian.h"

#include "image/errors.h"
#include "image/interruption.h"

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

/// Blurs one plane; `line` has room for a row and for a column.
template <class T>
void blur_plane(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights,
                double* line)
{
    const std::ptrdiff_t nx = from.width(), ny = from.height();
    for (std::ptrdiff_t y = 0; y < ny; ++y) {
        dm::stop_if_interrupted();
        for (std::ptrdiff_t x = 0; x < nx; ++x) line[x] = weighted_mean(from.row(y), from.strides()[0], nx, x, weights);
        for (std::ptrdiff_t x = 0; x < nx; ++x) to(x, y) = static_cast<T>(line[x]);
    }
    for (std::ptrdiff_t x = 0; x < nx; ++x) {
        dm::stop_if_interrupted();
        for (std::ptrdiff_t y = 0; y < ny; ++y) line[y] = weighted_mean(&to(x), to.strides()[1], ny, y, weights);
        for (std::ptrdiff_t y = 0; y < ny; ++y) to(x, y) = static_cast<T>(line[y]);
    }
}

}  // namespace

std::vector<double> gaussian_weights(double sigma, std::int32_t order, std::ptrdiff_t limit)
{
    // Compared before the conversion: the length can exceed every integer, and order 0 of an infinite sigma gives NaN.
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

std::vector<double> gaussian_norms(const std::vector<double>& weights, std::ptrdiff_t n)
{
    constexpr std::ptrdiff_t together = 8;  // independent sums hide the latency of the additions
    std::vector<double> norms(static_cast<std::size_t>(n));
    const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(weights.size()) - 1;
    double both_sides = weights[0];  // of the taps that have samples on the left and on the right
    for (std::ptrdiff_t begin = 0; begin <= n - 1 - begin; begin += together) {
        const std::ptrdiff_t end = std::min(begin + together, (n + 1) / 2);
        double sums[together] = {};
        const auto add_one_sided = [&](std::ptrdiff_t i, std::ptrdiff_t from, std::ptrdiff_t to) {
            for (std::ptrdiff_t k = from; k <= std::min({to, last, n - 1 - i}); ++k) sums[i - begin] += weights[k];
        };
        for (std::ptrdiff_t i = begin; i < end; ++i) {
            if (i > 0 && i <= last) both_sides = both_sides + weights[i] + weights[i];
            sums[i - begin] = both_sides;
            add_one_sided(i, i + 1, end - 1);
        }
        const std::ptrdiff_t common_last = std::min(last, n - end);  // of the taps that all these samples have
        for (std::ptrdiff_t k = end; k <= common_last; ++k)
            for (double& sum : sums) sum += weights[k];
        for (std::ptrdiff_t i = begin; i < end; ++i) {
            add_one_sided(i, std::max(end, common_last + 1), last);
            norms[i] = norms[n - 1 - i] = sums[i - begin];  // the same additions from the other end
        }
    }
    return norms;
}

// The kernels allocate all memory before they write, so that a lack of it leaves the destination as it was.

template <class T>
void gaussian_plain(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    std::vector<double> line(static_cast<std::size_t>(std::max(from.width(), from.height())));
    for (std::ptrdiff_t z = 0; z < std::min(from.depth(), to.depth()); ++z)
        blur_plane(from.plane(z), to.plane(z), weights, line.data());
}

namespace {

/// A destination without contiguous rows takes the plain form.
template <class Arch, class T>
void gaussian_fast(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    if (to.strides()[0] != 1) return gaussian_plain<T>(from, to, weights);
    using gauss::slack;
    const std::ptrdiff_t width = from.width(), height = from.height();
    const auto n = static_cast<std::ptrdiff_t>(weights.size());
    std::vector<gauss::tap> taps;
    for (const double weight : weights) taps.push_back({{weight, weight, weight, weight}, nullptr, nullptr});
    auto norms_of_row = gaussian_norms(weights, width);
    norms_of_row.resize(static_cast<std::size_t>(width + slack), 1.0);
    const auto norms_of_column = gaussian_norms(weights, height);
    std::vector<double> line(static_cast<std::size_t>(width + 2 * slack), -0.0);

    const std::ptrdiff_t ring_rows = std::min(2 * n - 1, height);
    // Every sample of the ring is read once for each row in the window, so a usual window should fit the first cache.
    constexpr std::ptrdiff_t ring_bytes = 28 * 1024;
    const std::ptrdiff_t block = std::clamp<std::ptrdiff_t>(
        ring_bytes / static_cast<std::ptrdiff_t>(sizeof(double)) / ring_rows / slack * slack, 2 * slack, 512);
    std::vector<double> ring(static_cast<std::size_t>(ring_rows * block)), norm(static_cast<std::size_t>(block));
    std::vector<double*> ring_row;
    for (std::ptrdiff_t y = 0; y < height; ++y) ring_row.push_back(ring.data() + y % ring_rows * block);

    const gauss::workspace room{
        n,     taps.data(), norms_of_row.data(), norms_of_column.data(), line.data() + slack, ring_row.data(),
        block, norm.data()};
    for (std::ptrdiff_t z = 0; z < std::min(from.depth(), to.depth()); ++z)
        gaussian_simd<Arch, T>(from.plane(z), to.plane(z), room);
}

template <class T>
constexpr dm::variant<gaussian_kernel<T>> rows[] = {{"avx2", dm::cpu::avx2, gaussian_fast<xsimd::avx2, T>},
                                                    {"sse2", dm::cpu::sse2, gaussian_fast<xsimd::sse2, T>},
                                                    {"plain", dm::cpu::none, gaussian_plain<T>}};

}  // namespace

template <class T>
dm::variants<gaussian_kernel<T>> gaussian_variants()
{
    return rows<T>;
}

template <class T>
void gaussian_blur(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to, double sigma,
                   std::int32_t order)
{
    const bool valid = from.width() > 0 && from.height() > 0 && from.data() && sigma >= 0 && order >= 0 && to.data();
    dm::require(valid, dm::errors::parameters_invalid);
    const auto weights = gaussian_weights(sigma, order, std::max(from.width(), from.height()));
    dm::choose(gaussian_variants<T>()).function(from, to, weights);
}

template <class T>
using gaussian_table = dm::variants<gaussian_kernel<T>>;

#define INSTANTIATE(T)                                 \
    template gaussian_table<T> gaussian_variants<T>(); \
    template gaussian_kernel<T> gaussian_plain<T>;     \
    template void gaussian_blur<T>(const dm::image<const T>&, const dm::image<T>&, double, std::int32_t)
INSTANTIATE(float);
INSTANTIATE(double);
#undef INSTANTIATE

}  // namespace qorv::functions
