#include "functions/smoothing/box_slice.h"

#include "numeric/complex.h"

#include <algorithm>
#include <vector>

namespace qorv::functions {

namespace {

using numeric::real_of;

/// The column sums over the window's rows, of the values that `rule` makes of the pixels.
template <class T, class Rule>
class column_sums
{
  public:
    column_sums(std::ptrdiff_t width, std::ptrdiff_t radius, Rule rule)
        : radius_{radius}, rule_{rule}, sums_(static_cast<std::size_t>(width))
    {}

    /// Averages one plane.
    void average(const dm::image<const T>& from, const dm::image<T>& to)
    {
        std::ranges::fill(sums_, T{});
        const std::ptrdiff_t ny = from.height(), r = radius_;
        for (std::ptrdiff_t y = 0; y < std::min(ny, r); ++y) add(from, y);
        for (std::ptrdiff_t y = 0; y < ny; ++y) {
            if (y > r)
                for (std::ptrdiff_t x = 0; x < from.width(); ++x) sums_[x] -= rule_(from(x, y - r - 1));
            if (y + r < ny) add(from, y + r);
            average_row(to, y, std::min(ny, y + r + 1) - std::max<std::ptrdiff_t>(0, y - r));
        }
    }

  private:
    void add(const dm::image<const T>& from, std::ptrdiff_t y)
    {
        for (std::ptrdiff_t x = 0; x < from.width(); ++x) sums_[x] += rule_(from(x, y));
    }

    /// Divides the sums along one row by the pixels in the window; `rows` is the window's clipped height.
    void average_row(const dm::image<T>& to, std::ptrdiff_t y, std::ptrdiff_t rows) const
    {
        const auto nx = static_cast<std::ptrdiff_t>(sums_.size());
        const std::ptrdiff_t r = radius_;
        T sum{};
        for (std::ptrdiff_t x = 0; x < std::min(nx, r); ++x) sum += sums_[x];
        for (std::ptrdiff_t x = 0; x < nx; ++x) {
            if (x > r) sum -= sums_[x - r - 1];
            if (x + r < nx) sum += sums_[x + r];
            const std::ptrdiff_t width = std::min(nx, x + r + 1) - std::max<std::ptrdiff_t>(0, x - r);
            to(x, y) = sum / static_cast<real_of<T>>(width * rows);
        }
    }

    std::ptrdiff_t radius_;
    Rule rule_;
    std::vector<T> sums_;
};

constexpr auto value_itself = [](auto value) { return value; };
constexpr auto squared = [](auto value) { return numeric::product(value, value); };

template <class T, class Rule>
column_sums<T, Rule> sums_of(const dm::image<const T>& from, std::ptrdiff_t radius, Rule rule)
{
    return {from.width(), radius, rule};
}

}  // namespace

template <class T>
prepared_filter box_slice_plain(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius)
{
    return [=, sums = sums_of(from, radius, value_itself)]() mutable {
        for (std::ptrdiff_t z = 0; z < std::min(from.depth(), mean.depth()); ++z)
            sums.average(from.plane(z), mean.plane(z));
    };
}

template <class T>
void box_slice2_plain(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                      std::ptrdiff_t radius)
{
    auto sums = sums_of(from, radius, value_itself);
    auto sums_of_squares = sums_of(from, radius, squared);
    sums.average(from, mean);
    sums_of_squares.average(from, squares);
}

namespace {

template <class T>
constexpr dm::variant<box_slice_kernel<T>> rows[] = {{"sse2", dm::cpu::sse2, box_slice_simd<xsimd::sse2, T>},
                                                     {"plain", dm::cpu::none, box_slice_plain<T>}};
template <class T>
constexpr dm::variant<box_slice2_kernel<T>> rows2[] = {{"sse2", dm::cpu::sse2, box_slice2_simd<xsimd::sse2, T>},
                                                       {"plain", dm::cpu::none, box_slice2_plain<T>}};

}  // namespace

template <class T>
dm::variants<box_slice_kernel<T>> box_slice_variants()
{
    return rows<T>;
}
template <class T>
dm::variants<box_slice2_kernel<T>> box_slice2_variants()
{
    return rows2<T>;
}

template <class T>
using box_slice_table = dm::variants<box_slice_kernel<T>>;
template <class T>
using box_slice2_table = dm::variants<box_slice2_kernel<T>>;

#define INSTANTIATE(T)                                     \
    template box_slice_table<T> box_slice_variants<T>();   \
    template box_slice2_table<T> box_slice2_variants<T>(); \
    template box_slice_kernel<T> box_slice_plain<T>;       \
    template box_slice2_kernel<T> box_slice2_plain<T>
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
