#include "functions/rank/median_z.h"

#include "functions/rank/median.h"
#include "functions/rank/special_values.h"
#include "image/errors.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qorv::functions {
namespace {

constexpr std::ptrdiff_t network_planes = 512;  // the deepest stack for which a network beats the selection

/// Width of a block: as many cache lines as allow all its rows to stay in a 32 KB first-level cache, at most
/// `widest_block`.
constexpr std::ptrdiff_t line_bytes = 64;
constexpr std::ptrdiff_t widest_block = 4;
constexpr std::ptrdiff_t block_bytes = 24 * 1024;

template <class T>
void median_z_plain(const dm::image<const T>& stack, const dm::image<T>& destination)
{
    std::vector<T> column(static_cast<std::size_t>(stack.depth()));
    for (std::ptrdiff_t y = 0; y < stack.height(); ++y)
        for (std::ptrdiff_t x = 0; x < stack.width(); ++x) {
            for (std::ptrdiff_t z = 0; z < stack.depth(); ++z) column[static_cast<std::size_t>(z)] = stack(x, y, z);
            destination(x, y) = median_of(column.data(), column.data() + column.size());
        }
}

/// Appends the comparators for the rows begin .. begin + count - 1 and returns the network, still without pointers.
sorting_network build_network(std::ptrdiff_t begin, std::ptrdiff_t count, std::vector<comparator>& comparators)
{
    std::ptrdiff_t top = 1;
    while (2 * top < count) top *= 2;
    const std::ptrdiff_t stride = std::max<std::ptrdiff_t>(top / 4, 1);
    for (std::ptrdiff_t p = stride / 2; p > 0; p /= 2) {
        std::ptrdiff_t q = top;
        std::ptrdiff_t r = 0;
        for (std::ptrdiff_t d = p; d > 0; d = q - p, q /= 2, r = p)
            for (std::ptrdiff_t i = 0; i + d < count; ++i)
                if ((i & p) == r) comparators.push_back({std::int32_t(begin + i), std::int32_t(begin + i + d)});
    }
    return {begin, begin + count, stride, nullptr, nullptr};
}

/// The medians of neighbouring columns of a stack.
template <class T, class Arch>
class column_medians
{
  public:
    explicit column_medians(std::ptrdiff_t depth)
        : depth_{depth},
          columns_{line_bytes / std::ptrdiff_t(sizeof(T)) *
                   std::clamp<std::ptrdiff_t>(block_bytes / (line_bytes * depth), 1, widest_block)},
          rows_(static_cast<std::size_t>(depth * columns_)),
          column_(static_cast<std::size_t>(depth))
    {
        if (depth > network_planes) return;
        const std::ptrdiff_t half = (depth + 1) / 2;
        halves_[0] = build_network(0, half, comparators_);
        const std::size_t split = comparators_.size();
        halves_[1] = build_network(half, depth - half, comparators_);
        const comparator* const first = comparators_.data();
        halves_[0].first = first;
        halves_[0].last = halves_[1].first = first + split;
        halves_[1].last = first + comparators_.size();
    }
    column_medians(const column_medians&) = delete;
    column_medians& operator=(const column_medians&) = delete;

    /// The largest `count` for `run`.
    std::ptrdiff_t columns() const { return columns_; }

    /// The medians of `count` columns from (x, y) on, whose values must be contiguous along x.
    void run(const dm::image<const T>& stack, std::ptrdiff_t x, std::ptrdiff_t y, std::ptrdiff_t count, T* out)
    {
        for (std::ptrdiff_t z = 0; z < depth_; ++z)
            std::memcpy(row(z), stack.row(y, z) + x, static_cast<std::size_t>(count) * sizeof(T));
        if (depth_ > network_planes || any_special(rows_.data(), depth_ * columns_)) return select_each(count, out);
        const column_block<T> block{rows_.data(), depth_, columns_};
        for (const auto& half : halves_) sort_columns<Arch>(block, half);
        medians_of_halves<Arch>(block, count, out);
    }

  private:
    T* row(std::ptrdiff_t z) { return rows_.data() + z * columns_; }

    /// Also for blocks with a NaN or -0.
    void select_each(std::ptrdiff_t count, T* out)
    {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            for (std::ptrdiff_t z = 0; z < depth_; ++z) column_[static_cast<std::size_t>(z)] = row(z)[i];
            out[i] = median_of(column_.data(), column_.data() + depth_);
        }
    }

    std::ptrdiff_t depth_, columns_;
    std::vector<T> rows_, column_;
    std::vector<comparator> comparators_;
    sorting_network halves_[2]{};
};

/// Positions that are not contiguous along x take the plain form.
template <class T, class Arch>
void median_z_fast(const dm::image<const T>& stack, const dm::image<T>& destination)
{
    if (stack.strides()[0] != 1 || destination.strides()[0] != 1) return median_z_plain<T>(stack, destination);
    column_medians<T, Arch> medians{stack.depth()};
    const std::ptrdiff_t step = medians.columns();
    for (std::ptrdiff_t y = 0; y < stack.height(); ++y)
        for (std::ptrdiff_t x = 0; x < stack.width(); x += step)
            medians.run(stack, x, y, std::min(step, stack.width() - x), destination.row(y) + x);
}

}  // namespace

template <class T>
dm::variants<median_z_kernel<T>> median_z_variants()
{
    static constexpr dm::variant<median_z_kernel<T>> table[] = {{"avx2", dm::cpu::avx2, median_z_fast<T, xsimd::avx2>},
                                                                {"sse2", dm::cpu::sse2, median_z_fast<T, xsimd::sse2>},
                                                                {"plain", dm::cpu::none, median_z_plain<T>}};
    return table;
}

template <class T>
void median_z(const dm::image<const T>& stack, const dm::image<T>& destination)
{
    dm::require(stack.data() != nullptr && destination.data() != nullptr && stack.size() > 0,
                dm::errors::parameters_invalid);
    dm::require(destination.sizes() == typename dm::image<T>::extents{stack.width(), stack.height(), 1},
                dm::errors::invalid_image_size);
    dm::choose(median_z_variants<T>()).function(stack, destination);
}

template dm::variants<median_z_kernel<float>> median_z_variants();
template dm::variants<median_z_kernel<double>> median_z_variants();
template void median_z(const dm::image<const float>&, const dm::image<float>&);
template void median_z(const dm::image<const double>&, const dm::image<double>&);

}  // namespace qorv::functions
