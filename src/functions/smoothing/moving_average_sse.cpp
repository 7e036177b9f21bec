#include "functions/smoothing/moving_average_down.h"
#include "functions/smoothing/moving_average_parts.h"
#include "functions/smoothing/moving_average_strip_sse.h"
#include "image/overlap.h"

#include <emmintrin.h>
#include <algorithm>
#include <vector>

namespace qorv::functions {

using namespace box;

namespace {

/// The pass along x: all rows of all planes, in place or not. The rows that the last strip lacks repeat its last one.
template <class T>
void average_rows(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t radius)
{
    using L = lanes<T>;
    const std::ptrdiff_t width = from.width(), height = from.height();
    const std::ptrdiff_t count = height * std::min(from.depth(), to.depth());
    strip<T> pixels{width, radius};
    const pass_scale<typename L::real> scale{width, radius, L::pixels};
    const auto inverse = L::all(scale.inverse());
    for (std::ptrdiff_t first = 0; first < count; first += L::rows) {
        const T* source[L::rows];
        T* result[L::rows];
        for (int k = 0; k < L::rows; ++k) {
            const std::ptrdiff_t row = std::min(first + k, count - 1);
            source[k] = from.row(row % height, row / height);
            result[k] = to.row(row % height, row / height);
        }
        for (std::ptrdiff_t x = 0; x < width; x += L::pixels)
            for (int g = 0; g < L::groups; ++g) {
                typename L::vec block[L::pixels];
                for (int j = 0; j < L::pixels; ++j) block[j] = load_some(source[g * L::pixels + j] + x, width - x);
                transpose(block);
                for (int j = 0; j < L::pixels; ++j) L::store(pixels.at(x + j, g), block[j]);
            }
        pixels.run([](auto sum, auto entering, auto leaving) { return sum + (entering - leaving); },
                   [&](std::ptrdiff_t x, int, auto sum) { return sum * inverse * L::all(scale[x]); }, result);
    }
}

/// What the filter averages: the pixels or their squares, as vectors of pixels of type T.
template <class T>
struct values
{
    static auto of(typename lanes<T>::vec v) { return v; }
};

template <class T>
struct squares_of_values
{
    static auto of(typename lanes<T>::vec v) { return v * v; }
};
template <>
struct squares_of_values<std::complex<float>>  // (re re - im im, re im + im re)
{
    static __m128 of(__m128 v)
    {
        const __m128 re = _mm_shuffle_ps(v, v, _MM_SHUFFLE(2, 2, 0, 0));
        const __m128 im = _mm_shuffle_ps(v, v, _MM_SHUFFLE(3, 3, 1, 1));
        const __m128 swapped = _mm_shuffle_ps(v, v, _MM_SHUFFLE(2, 3, 0, 1));
        return re * v + _mm_xor_ps(im * swapped, _mm_set_ps(0.0f, -0.0f, 0.0f, -0.0f));
    }
};
template <>
struct squares_of_values<std::complex<double>>
{
    static __m128d of(__m128d v)
    {
        const __m128d re = _mm_unpacklo_pd(v, v), im = _mm_unpackhi_pd(v, v), swapped = _mm_shuffle_pd(v, v, 1);
        return re * v + _mm_xor_pd(im * swapped, _mm_set_pd(0.0, -0.0));
    }
};

/// The true number of pixels in the windows of a strip's rows.
template <class T>
class window_sizes
{
    using L = lanes<T>;
    using real = typename L::real;

  public:
    window_sizes(std::ptrdiff_t width, std::ptrdiff_t radius, const std::ptrdiff_t (&heights)[L::rows])
        : width_{width}, radius_{radius}, heights_{heights}
    {
        for (int g = 0; g < L::groups; ++g) inside_[g] = sizes(2 * radius + 1, g);
    }

    /// As divisors of the lanes of group `g` at `x`.
    auto at(std::ptrdiff_t x, int g) const
    {
        if (x >= radius_ && x < width_ - radius_) return inside_[g];
        return sizes(std::min(width_, x + radius_ + 1) - std::max<std::ptrdiff_t>(0, x - radius_), g);
    }

  private:
    typename L::vec sizes(std::ptrdiff_t columns, int g) const
    {
        constexpr int parts = sizeof(T) / sizeof(real);
        real room[L::reals];
        for (int k = 0; k < L::reals; ++k) room[k] = static_cast<real>(columns * heights_[g * L::pixels + k / parts]);
        return L::load(room);
    }

    std::ptrdiff_t width_, radius_;
    const std::ptrdiff_t (&heights_)[L::rows];
    typename L::vec inside_[L::groups];
};

/// The two-dimensional filter of one plane, a strip of rows at a time.
template <class T, template <class> class Rule>
class plane_filter
{
    using L = lanes<T>;
    using vec = typename L::vec;
    using real = typename L::real;

  public:
    plane_filter(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t radius)
        : from_{from},
          to_{to},
          radius_{std::min(radius, from.height())},
          pixels_{from.width(), radius},
          columns_(static_cast<std::size_t>((from.width() + L::tile) * (sizeof(T) / sizeof(real)))),
          zeros_(static_cast<std::size_t>(from.width()))
    {
        for (std::ptrdiff_t y = 0; y < radius_; ++y)
            for (std::ptrdiff_t x = 0; x < from.width(); x += L::pixels) {
                const vec row = Rule<T>::of(load_some(from.row(y) + x, from.width() - x));
                L::store(column(x), L::load(column(x)) + row);
            }
    }

    /// Rows `first`, first + 1, ...; strips must follow each other. The rows that the last one lacks repeat row ny - 1.
    void average_strip(std::ptrdiff_t first)
    {
        const std::ptrdiff_t height = from_.height(), width = from_.width();
        const T *leaving[L::rows], *entering[L::rows];
        T* result[L::rows];
        std::ptrdiff_t heights[L::rows];
        for (int k = 0; k < L::rows; ++k) {
            const std::ptrdiff_t y = std::min(first + k, height - 1);
            const bool moves = first + k < height;
            leaving[k] = moves && y > radius_ ? from_.row(y - radius_ - 1) : zeros_.data();
            entering[k] = moves && y + radius_ < height ? from_.row(y + radius_) : zeros_.data();
            result[k] = to_.row(y);
            heights[k] = std::min(height, y + radius_ + 1) - std::max<std::ptrdiff_t>(0, y - radius_);
        }
        std::ptrdiff_t x = 0;
        const auto direct = [](const T* p, std::ptrdiff_t) { return L::load(reinterpret_cast<const real*>(p)); };
        for (; x + L::tile <= width; x += L::tile) sum_tile(leaving, entering, x, direct);
        if (x < width) sum_tile(leaving, entering, x, load_some<T>);

        const window_sizes<T> sizes{width, pixels_.radius(), heights};
        pixels_.run([](vec sum, vec in, vec out) { return sum - out + in; },
                    [&](std::ptrdiff_t at, int g, vec sum) { return sum / sizes.at(at, g); }, result);
    }

  private:
    real* column(std::ptrdiff_t x)
    {
        return columns_.data() + x * static_cast<std::ptrdiff_t>(sizeof(T) / sizeof(real));
    }

    /// Moves the column sums of one tile down the strip's rows and lays them into the strip.
    template <class Load>
    void sum_tile(const T* const (&leaving)[L::rows], const T* const (&entering)[L::rows], std::ptrdiff_t start,
                  Load load)
    {
        const auto value = [&](const T* row, int v) {
            const std::ptrdiff_t x = start + v * L::pixels;
            return Rule<T>::of(load(row + x, from_.width() - x));
        };
        vec sum[4], sums[L::rows][4];
        for (int v = 0; v < 4; ++v) sum[v] = L::load(column(start + v * L::pixels));
        for (int k = 0; k < L::rows; ++k)
            for (int v = 0; v < 4; ++v) {
                sum[v] = sum[v] - value(leaving[k], v) + value(entering[k], v);
                sums[k][v] = sum[v];
            }
        for (int v = 0; v < 4; ++v) L::store(column(start + v * L::pixels), sum[v]);
        for (int v = 0; v < 4; ++v)
            for (int g = 0; g < L::groups; ++g) {
                vec block[L::pixels];
                for (int j = 0; j < L::pixels; ++j) block[j] = sums[g * L::pixels + j][v];
                transpose(block);
                for (int j = 0; j < L::pixels; ++j) L::store(pixels_.at(start + v * L::pixels + j, g), block[j]);
            }
    }

    const dm::image<const T>& from_;
    const dm::image<T>& to_;
    std::ptrdiff_t radius_;  ///< a radius beyond the height meets the same rows as the height
    strip<T> pixels_;
    std::vector<real> columns_;
    std::vector<T> zeros_;  ///< the row above the first and below the last
};

template <class... Images>
bool contiguous_rows(const Images&... images)
{
    return ((images.strides()[0] == 1) && ...);
}

}  // namespace

template <class T>
void box_pass_sse(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    const bool lanes_fit = contiguous_rows(from, to) && (dm::same_pixels(from, to) || !dm::overlap(from, to));
    if (!lanes_fit) return box_pass_plain<T>(from, to, along, radius);
    if (along != axis::x) return box_pass_down<T>(from, to, along, radius);
    average_rows(from, to, radius);
}

template <class T>
void box_slice_sse(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius)
{
    if (!contiguous_rows(from, mean)) return box_slice_plain<T>(from, mean, radius);
    plane_filter<T, values> filter{from, mean, radius};
    for (std::ptrdiff_t y = 0; y < from.height(); y += lanes<T>::rows) filter.average_strip(y);
}

template <class T>
void box_slice2_sse(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                    std::ptrdiff_t radius)
{
    if (!contiguous_rows(from, mean, squares)) return box_slice2_plain<T>(from, mean, squares, radius);
    plane_filter<T, values> filter{from, mean, radius};
    plane_filter<T, squares_of_values> second{from, squares, radius};
    for (std::ptrdiff_t y = 0; y < from.height(); y += lanes<T>::rows) {
        filter.average_strip(y);
        second.average_strip(y);
    }
}

template box_pass_kernel<float> box_pass_sse<float>;
template box_slice_kernel<float> box_slice_sse<float>;
template box_slice2_kernel<float> box_slice2_sse<float>;
template box_pass_kernel<double> box_pass_sse<double>;
template box_slice_kernel<double> box_slice_sse<double>;
template box_slice2_kernel<double> box_slice2_sse<double>;
template box_pass_kernel<std::complex<float>> box_pass_sse<std::complex<float>>;
template box_slice_kernel<std::complex<float>> box_slice_sse<std::complex<float>>;
template box_slice2_kernel<std::complex<float>> box_slice2_sse<std::complex<float>>;
template box_pass_kernel<std::complex<double>> box_pass_sse<std::complex<double>>;
template box_slice_kernel<std::complex<double>> box_slice_sse<std::complex<double>>;
template box_slice2_kernel<std::complex<double>> box_slice2_sse<std::complex<double>>;

}  // namespace qorv::functions
