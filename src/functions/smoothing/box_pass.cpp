#include "functions/smoothing/box_pass.h"

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

/// All lines along an axis. `copy` has the length of a line.
template <class T>
void average_lines(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius, T* copy)
{
    const int a = static_cast<int>(along), b = a == 0 ? 1 : 0, c = a == 2 ? 1 : 2;
    const auto size = [&](int i) { return std::min(from.sizes()[i], to.sizes()[i]); };
    for (std::ptrdiff_t k = 0; k < size(c); ++k)
        for (std::ptrdiff_t j = 0; j < size(b); ++j) {
            const auto offset = [&](const auto& strides) { return j * strides[b] + k * strides[c]; };
            average_line<T>({from.data() + offset(from.strides()), from.strides()[a]},
                            {to.data() + offset(to.strides()), to.strides()[a]}, from.sizes()[a], size(a), radius,
                            copy);
        }
}

}  // namespace

template <class T>
prepared_filter box_pass_plain(const dm::image<const T>& from, const dm::image<T>& to, axis along,
                               std::ptrdiff_t radius)
{
    std::vector<T> copy(static_cast<std::size_t>(from.sizes()[static_cast<int>(along)]));
    return [=, copy = std::move(copy)]() mutable { average_lines(from, to, along, radius, copy.data()); };
}

template <class T>
bool box_pass_has_lanes(const dm::image<const T>& from, const dm::image<T>& to)
{
    return from.strides()[0] == 1 && to.strides()[0] == 1 && (dm::same_pixels(from, to) || !dm::overlap(from, to));
}

namespace {

template <class T>
constexpr dm::variant<box_pass_kernel<T>> rows[] = {{"sse2", dm::cpu::sse2, box_pass_simd<xsimd::sse2, T>},
                                                    {"plain", dm::cpu::none, box_pass_plain<T>}};

}  // namespace

template <class T>
dm::variants<box_pass_kernel<T>> box_pass_variants()
{
    return rows<T>;
}

template <class T>
using box_pass_table = dm::variants<box_pass_kernel<T>>;

#define INSTANTIATE(T)                                 \
    template box_pass_table<T> box_pass_variants<T>(); \
    template box_pass_kernel<T> box_pass_plain<T>;     \
    template bool box_pass_has_lanes<T>(const dm::image<const T>&, const dm::image<T>&)
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
