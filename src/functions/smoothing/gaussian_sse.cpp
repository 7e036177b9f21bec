#include "functions/smoothing/gaussian.h"

#include <emmintrin.h>
#include <algorithm>
#include <cstring>
#include <vector>

/// Many pixels side by side, each with its taps in the plain variant's order. Samples are converted to double once, and
/// -0 stands for those outside the image: adding a weight times -0 changes no sum, not even one that is -0.
namespace qorv::functions {

namespace {

constexpr std::ptrdiff_t group = 8;  // pixels in one step: four sums of two lanes hide the additions' latency

constexpr std::ptrdiff_t whole_groups(std::ptrdiff_t count) { return (count + group - 1) / group * group; }

/// A weight in both lanes, and the samples that it applies to: for each pixel the one before it and the one behind.
struct tap
{
    double weight[2];
    const double *before, *behind;
};

void store(float* to, __m128d a, __m128d b, __m128d c, __m128d d)
{
    _mm_storeu_ps(to, _mm_movelh_ps(_mm_cvtpd_ps(a), _mm_cvtpd_ps(b)));
    _mm_storeu_ps(to + 4, _mm_movelh_ps(_mm_cvtpd_ps(c), _mm_cvtpd_ps(d)));
}
void store(double* to, __m128d a, __m128d b, __m128d c, __m128d d)
{
    _mm_storeu_pd(to, a);
    _mm_storeu_pd(to + 2, b);
    _mm_storeu_pd(to + 4, c);
    _mm_storeu_pd(to + 6, d);
}

/// The weighted means of the group at `at`. The centre is the first tap, which counts once.
template <class T>
void mean_of_group(const std::vector<tap>& taps, const double* norm, std::ptrdiff_t at, T* to)
{
    const __m128d centre = _mm_loadu_pd(taps[0].weight);
    const double* pixels = taps[0].before + at;
    __m128d a = centre * _mm_loadu_pd(pixels), b = centre * _mm_loadu_pd(pixels + 2);
    __m128d c = centre * _mm_loadu_pd(pixels + 4), d = centre * _mm_loadu_pd(pixels + 6);
    const tap* const end = taps.data() + taps.size();
    for (const tap* t = taps.data() + 1; t != end; ++t) {
        const __m128d weight = _mm_loadu_pd(t->weight);
        for (const double* p : {t->before + at, t->behind + at}) {
            a = a + weight * _mm_loadu_pd(p);
            b = b + weight * _mm_loadu_pd(p + 2);
            c = c + weight * _mm_loadu_pd(p + 4);
            d = d + weight * _mm_loadu_pd(p + 6);
        }
    }
    norm += at;
    store(to, a / _mm_loadu_pd(norm), b / _mm_loadu_pd(norm + 2), c / _mm_loadu_pd(norm + 4),
          d / _mm_loadu_pd(norm + 6));
}

/// `count` means; samples and norms are there for whole groups.
template <class T>
void weighted_means(const std::vector<tap>& taps, const double* norm, T* to, std::ptrdiff_t count)
{
    std::ptrdiff_t at = 0;
    for (; at + group <= count; at += group) mean_of_group(taps, norm, at, to + at);
    if (at == count) return;
    T room[group];
    mean_of_group(taps, norm, at, room);
    std::memcpy(to + at, room, static_cast<std::size_t>(count - at) * sizeof(T));
}

/// The sum of the weights that meet the line, for each of its `n` samples, and 1 behind them.
std::vector<double> norms_of_line(const std::vector<double>& weights, std::ptrdiff_t n)
{
    std::vector<double> norms(static_cast<std::size_t>(n + group), 1.0);
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        double sum = weights[0];
        for (std::ptrdiff_t k = 1; k < static_cast<std::ptrdiff_t>(weights.size()); ++k) {
            if (i - k >= 0) sum += weights[k];
            if (i + k < n) sum += weights[k];
        }
        norms[i] = sum;
    }
    return norms;
}

std::vector<tap> taps_of(const std::vector<double>& weights)
{
    std::vector<tap> taps;
    for (const double weight : weights) taps.push_back({{weight, weight}, nullptr, nullptr});
    return taps;
}

template <class T>
void blur_rows(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    const std::ptrdiff_t width = from.width(), step = from.strides()[0];
    const auto n = static_cast<std::ptrdiff_t>(weights.size());
    const auto norms = norms_of_line(weights, width);
    std::vector<double> line(static_cast<std::size_t>(width + group + 2 * n), -0.0);
    double* pixels = line.data() + n;
    auto taps = taps_of(weights);
    for (std::ptrdiff_t i = 0; i < n; ++i) taps[i].before = pixels - i, taps[i].behind = pixels + i;
    for (std::ptrdiff_t y = 0; y < from.height(); ++y) {
        const T* row = from.row(y);
        if (step == 1)
            for (std::ptrdiff_t x = 0; x < width; ++x) pixels[x] = row[x];
        else
            for (std::ptrdiff_t x = 0; x < width; ++x) pixels[x] = row[x * step];
        weighted_means(taps, norms.data(), to.row(y), width);
    }
}

/// The rows of some neighbouring columns as far as the window reaches, in double precision. A ring: row y takes the
/// place of the row that the window left.
class row_ring
{
  public:
    row_ring(std::ptrdiff_t columns, std::ptrdiff_t height, std::ptrdiff_t rows)
        : pitch_{whole_groups(columns)},
          height_{height},
          rows_{rows},
          data_(static_cast<std::size_t>(pitch_ * (rows + 1)), -0.0)
    {}
    template <class T>
    void take(std::ptrdiff_t y, const T* row, std::ptrdiff_t columns)
    {
        double* to = data_.data() + y % rows_ * pitch_;
        for (std::ptrdiff_t c = 0; c < columns; ++c) to[c] = row[c];
    }
    /// -0 above and below the image.
    const double* operator[](std::ptrdiff_t y) const
    {
        return data_.data() + (y >= 0 && y < height_ ? y % rows_ : rows_) * pitch_;
    }

  private:
    std::ptrdiff_t pitch_, height_, rows_;
    std::vector<double> data_;
};

template <class T>
void blur_columns(const dm::image<T>& image, const std::vector<double>& weights)
{
    const std::ptrdiff_t width = image.width(), height = image.height();
    const auto n = static_cast<std::ptrdiff_t>(weights.size());
    const auto norms = norms_of_line(weights, height);
    const std::ptrdiff_t rows = std::min(2 * n - 1, height);
    // Every sample of the ring is read once for each row in the window, so a usual window should fit the first cache.
    constexpr std::ptrdiff_t ring_bytes = 28 * 1024;
    const std::ptrdiff_t block =
        std::clamp<std::ptrdiff_t>(ring_bytes / static_cast<std::ptrdiff_t>(sizeof(double)) / rows / 16 * 16, 32, 512);
    row_ring ring{block, height, rows};
    auto taps = taps_of(weights);
    std::vector<double> norm(static_cast<std::size_t>(block));
    for (std::ptrdiff_t x = 0; x < width; x += block) {
        const std::ptrdiff_t columns = std::min(block, width - x);
        for (std::ptrdiff_t y = 0; y < std::min(n - 1, height); ++y) ring.take(y, image.row(y) + x, columns);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (y + n - 1 < height) ring.take(y + n - 1, image.row(y + n - 1) + x, columns);
            for (std::ptrdiff_t i = 0; i < n; ++i) taps[i].before = ring[y - i], taps[i].behind = ring[y + i];
            if (norm[0] != norms[y]) std::fill(norm.begin(), norm.end(), norms[y]);
            weighted_means(taps, norm.data(), image.row(y) + x, columns);
        }
    }
}

}  // namespace

template <class T>
void gaussian_sse(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    if (to.strides()[0] != 1) return gaussian_plain<T>(from, to, weights);
    blur_rows(from, to, weights);
    blur_columns(to, weights);
}

template gaussian_kernel<float> gaussian_sse<float>;
template gaussian_kernel<double> gaussian_sse<double>;

}  // namespace qorv::functions
