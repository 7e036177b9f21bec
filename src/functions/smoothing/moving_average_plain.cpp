#include "functions/smoothing/moving_average.h"
#include "functions/smoothing/moving_average_parts.h"

#include <algorithm>
#include <vector>

namespace qorv::functions {

using namespace box;

namespace {

/// Samples of one line, `step` elements apart.
template <class T>
struct line
{
    T* data;
    std::ptrdiff_t step;
    T& operator[](std::ptrdiff_t i) const { return data[i * step]; }
};

/// Averages `n` samples into the first `outputs` results. `copy` takes the samples as they are read, because the
/// results may overwrite them.
template <class T>
void average_line(line<const T> from, line<T> to, std::ptrdiff_t n, std::ptrdiff_t outputs, std::ptrdiff_t r, T* copy)
{
    using real = real_of<T>;
    const auto window = static_cast<real>(2 * r + 1);
    const real inverse = real(1) / window;
    const auto read = [&](std::ptrdiff_t i) { return copy[i] = from[i]; };
    const auto write = [&](std::ptrdiff_t i, T value) {
        if (i < outputs) to[i] = value;
    };
    const auto clipped = [&](std::ptrdiff_t samples) { return window / static_cast<real>(samples); };

    T sum{};
    for (std::ptrdiff_t i = 0; i < std::min(r, n); ++i) sum += read(i);
    for (std::ptrdiff_t i = 0; i < std::min(n - r, r + 1); ++i) {
        sum += read(i + r);
        write(i, sum * inverse * clipped(i + r + 1));
    }
    for (std::ptrdiff_t i = r + 1; i < n - r; ++i) {
        sum += read(i + r) - copy[i - r - 1];
        write(i, sum * inverse);
    }
    for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(n - r, 0); i < n; ++i) {
        if (i > r) sum -= copy[i - r - 1];
        write(i, sum * inverse * clipped(n - i + r));
    }
}

/// Divides the sums along one row by the pixels in the window; `rows` is the window's clipped height.
template <class T>
void average_row(const std::vector<T>& columns, line<T> to, std::ptrdiff_t r, std::ptrdiff_t rows)
{
    const auto nx = static_cast<std::ptrdiff_t>(columns.size());
    T sum{};
    for (std::ptrdiff_t x = 0; x < std::min(nx, r); ++x) sum += columns[x];
    for (std::ptrdiff_t x = 0; x < nx; ++x) {
        if (x > r) sum -= columns[x - r - 1];
        if (x + r < nx) sum += columns[x + r];
        const std::ptrdiff_t width = std::min(nx, x + r + 1) - std::max<std::ptrdiff_t>(0, x - r);
        to[x] = sum / static_cast<real_of<T>>(width * rows);
    }
}

/// The column sums of the window's rows, for the values as `rule` takes them.
template <class T, class Rule>
class column_sums
{
  public:
    column_sums(const dm::image<const T>& from, std::ptrdiff_t radius, Rule rule)
        : from_{from}, radius_{radius}, rule_{rule}, sums_(static_cast<std::size_t>(from.width()))
    {
        for (std::ptrdiff_t y = 0; y < std::min(from.height(), radius); ++y) add(y);
    }

    /// Moves the window from row y - 1 to row y.
    const std::vector<T>& move_to(std::ptrdiff_t y)
    {
        if (y > radius_)
            for (std::ptrdiff_t x = 0; x < from_.width(); ++x) sums_[x] -= rule_(from_(x, y - radius_ - 1));
        if (y + radius_ < from_.height()) add(y + radius_);
        return sums_;
    }

  private:
    void add(std::ptrdiff_t y)
    {
        for (std::ptrdiff_t x = 0; x < from_.width(); ++x) sums_[x] += rule_(from_(x, y));
    }

    const dm::image<const T>& from_;
    std::ptrdiff_t radius_;
    Rule rule_;
    std::vector<T> sums_;
};

template <class T, class Rule>
void average_plane(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t r, Rule rule)
{
    column_sums<T, Rule> columns{from, r, rule};
    const std::ptrdiff_t ny = from.height();
    for (std::ptrdiff_t y = 0; y < ny; ++y) {
        const std::ptrdiff_t rows = std::min(ny, y + r + 1) - std::max<std::ptrdiff_t>(0, y - r);
        average_row(columns.move_to(y), line<T>{to.row(y), to.strides()[0]}, r, rows);
    }
}

}  // namespace

template <class T>
void box_pass_plain(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    const int a = static_cast<int>(along), b = a == 0 ? 1 : 0, c = a == 2 ? 1 : 2;
    const auto size = [&](int i) { return std::min(from.sizes()[i], to.sizes()[i]); };
    const std::ptrdiff_t n = from.sizes()[a];
    std::vector<T> copy(static_cast<std::size_t>(n));
    for (std::ptrdiff_t k = 0; k < size(c); ++k)
        for (std::ptrdiff_t j = 0; j < size(b); ++j) {
            const auto offset = [&](const auto& strides) { return j * strides[b] + k * strides[c]; };
            average_line<T>({from.data() + offset(from.strides()), from.strides()[a]},
                            {to.data() + offset(to.strides()), to.strides()[a]}, n, size(a), radius, copy.data());
        }
}

template <class T>
void box_slice_plain(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius)
{
    average_plane(from, mean, radius, [](T value) { return value; });
}

template <class T>
void box_slice2_plain(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                      std::ptrdiff_t radius)
{
    average_plane(from, mean, radius, [](T value) { return value; });
    average_plane(from, squares, radius, [](T value) { return numeric::product(value, value); });
}

template box_pass_kernel<float> box_pass_plain<float>;
template box_slice_kernel<float> box_slice_plain<float>;
template box_slice2_kernel<float> box_slice2_plain<float>;
template box_pass_kernel<double> box_pass_plain<double>;
template box_slice_kernel<double> box_slice_plain<double>;
template box_slice2_kernel<double> box_slice2_plain<double>;
template box_pass_kernel<std::complex<float>> box_pass_plain<std::complex<float>>;
template box_slice_kernel<std::complex<float>> box_slice_plain<std::complex<float>>;
template box_slice2_kernel<std::complex<float>> box_slice2_plain<std::complex<float>>;
template box_pass_kernel<std::complex<double>> box_pass_plain<std::complex<double>>;
template box_slice_kernel<std::complex<double>> box_slice_plain<std::complex<double>>;
template box_slice2_kernel<std::complex<double>> box_slice2_plain<std::complex<double>>;

}  // namespace qorv::functions
