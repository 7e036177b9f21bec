#include "functions/smoothing/moving_average.h"

#include "image/errors.h"
#include "image/overlap.h"
#include "numeric/complex.h"

#include <algorithm>
#include <vector>

namespace qorv::functions {

namespace {

using numeric::real_of;

/// Samples of one line, `step` elements apart.
template <class T>
struct line
{
    T* data;
    std::ptrdiff_t step;
    T& operator[](std::ptrdiff_t i) const { return data[i * step]; }
};

/// Averages `n` samples into the first `outputs` results. The samples are copied to `copy` as they are read, because
/// the results may overwrite them.
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

/// The column sums over the window's rows, of the values that `rule` makes of the pixels.
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

/// Averages one plane. `columns` are the sums of its first row.
template <class T, class Rule>
void average_plane(column_sums<T, Rule>& columns, const dm::image<T>& to, std::ptrdiff_t r)
{
    const std::ptrdiff_t ny = to.height();
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
    column_sums columns{from, radius, [](T value) { return value; }};
    average_plane(columns, mean, radius);
}

template <class T>
void box_slice2_plain(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                      std::ptrdiff_t radius)
{
    // Both are allocated before anything is written, so that a lack of memory leaves the destinations as they were.
    column_sums columns{from, radius, [](T value) { return value; }};
    column_sums columns_of_squares{from, radius, [](T value) { return numeric::product(value, value); }};
    average_plane(columns, mean, radius);
    average_plane(columns_of_squares, squares, radius);
}

namespace {

template <class T>
constexpr dm::variant<box_pass_kernel<T>> box_pass_rows[] = {{"sse2", dm::cpu::sse2, box_pass_simd<xsimd::sse2, T>},
                                                             {"plain", dm::cpu::none, box_pass_plain<T>}};
template <class T>
constexpr dm::variant<box_slice_kernel<T>> box_slice_rows[] = {{"sse2", dm::cpu::sse2, box_slice_simd<xsimd::sse2, T>},
                                                               {"plain", dm::cpu::none, box_slice_plain<T>}};
template <class T>
constexpr dm::variant<box_slice2_kernel<T>> box_slice2_rows[] = {
    {"sse2", dm::cpu::sse2, box_slice2_simd<xsimd::sse2, T>}, {"plain", dm::cpu::none, box_slice2_plain<T>}};

}  // namespace

template <class T>
dm::variants<box_pass_kernel<T>> box_pass_variants()
{
    return box_pass_rows<T>;
}
template <class T>
dm::variants<box_slice_kernel<T>> box_slice_variants()
{
    return box_slice_rows<T>;
}
template <class T>
dm::variants<box_slice2_kernel<T>> box_slice2_variants()
{
    return box_slice2_rows<T>;
}

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

template <class T>
void average_along(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    require_data(from, to);
    if (radius < 1 || from.sizes()[static_cast<int>(along)] < 2) return;
    dm::choose(box_pass_variants<T>()).function(from, to, along, radius);
}

/// X, then Y, then Z; each pass after the first works on the destination.
template <class T>
void average_in_place(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t radius)
{
    average_along(from, to, axis::x, radius);
    average_along<T>(to, to, axis::y, radius);
    average_along<T>(to, to, axis::z, radius);
}

}  // namespace

template <class T>
bool box_pass_has_lanes(const dm::image<const T>& from, const dm::image<T>& to)
{
    return from.strides()[0] == 1 && to.strides()[0] == 1 && (dm::same_pixels(from, to) || !dm::overlap(from, to));
}

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

    const auto& slice = dm::choose(box_slice_variants<T>());
    for (std::ptrdiff_t z = 0; z < planes; ++z) slice.function(from.plane(z), to.plane(z), radius);
    const dm::image<T> written{to.data(), {to.width(), to.height(), planes}, to.strides()};
    average_along<T>(written, written, axis::z, radius);
}

template <class T>
void moving_average_x(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius)
{
    average_along(from, to, axis::x, radius);
}

template <class T>
void moving_average_y(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius)
{
    average_along(from, to, axis::y, radius);
}

template <class T>
void moving_average_z(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius)
{
    average_along(from, to, axis::z, radius);
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

template <class T>
using box_pass_table = dm::variants<box_pass_kernel<T>>;
template <class T>
using box_slice_table = dm::variants<box_slice_kernel<T>>;
template <class T>
using box_slice2_table = dm::variants<box_slice2_kernel<T>>;

#define INSTANTIATE(T)                                                                                    \
    template box_pass_table<T> box_pass_variants<T>();                                                    \
    template box_slice_table<T> box_slice_variants<T>();                                                  \
    template box_slice2_table<T> box_slice2_variants<T>();                                                \
    template bool box_pass_has_lanes<T>(const dm::image<const T>&, const dm::image<T>&);                  \
    template box_pass_kernel<T> box_pass_plain<T>;                                                        \
    template box_slice_kernel<T> box_slice_plain<T>;                                                      \
    template box_slice2_kernel<T> box_slice2_plain<T>;                                                    \
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
