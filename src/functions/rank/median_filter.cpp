#include "functions/rank/median_filter.h"

#include "functions/rank/median.h"
#include "functions/rank/median_filter_ranks.h"
#include "functions/rank/special_values.h"
#include "functions/rank/window_range.h"
#include "image/errors.h"
#include "image/interruption.h"
#include "image/overlap.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qorv::functions {
namespace {

/// Collects the window around (x, y) row by row and returns its median.
template <class T>
T window_median(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside, std::ptrdiff_t x,
                std::ptrdiff_t y, std::vector<T>& window)
{
    const window_range across = window_around(x, radius, source.width());
    const window_range down = window_around(y, radius, source.height());
    window.clear();
    const auto add_zeros = [&](std::ptrdiff_t count) {
        window.insert(window.end(), static_cast<std::size_t>(count), T(0));
    };
    if (outside == padding::none) {
        for (std::ptrdiff_t v = down.begin; v < down.end; ++v)
            for (std::ptrdiff_t u = across.begin; u < across.end; ++u) window.push_back(source(u, v));
        return median_of(window.data(), window.data() + window.size());
    }

    // Unless zeros are the majority, the image bounds the radius and thereby all sizes below.
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    if (side * side > 2 * static_cast<std::uint64_t>(across.count() * down.count())) return T(0);
    for (std::ptrdiff_t v = y - radius; v <= y + radius; ++v) {
        if (v < down.begin || v >= down.end) {
            add_zeros(2 * radius + 1);
            continue;
        }
        add_zeros(across.begin - (x - radius));
        for (std::ptrdiff_t u = across.begin; u < across.end; ++u) window.push_back(source(u, v));
        add_zeros(x + radius + 1 - across.end);
    }
    return median_of(window.data(), window.data() + window.size());
}

/// The plain form for the pixels [begin, end) of row y.
template <class T>
void filter_run(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                const dm::image<T>& destination, std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end,
                std::vector<T>& window)
{
    for (std::ptrdiff_t x = begin; x < end; ++x) {
        // Where the window spans the image, the next one holds the same values in the same order.
        const bool same = outside == padding::none && x > begin &&
                          window_around(x, radius, source.width()) == window_around(x - 1, radius, source.width());
        destination(x, y) = same ? destination(x - 1, y) : window_median(source, radius, outside, x, y, window);
    }
}

// All memory is allocated before anything is written, so that a lack of it leaves the destination as it was.

/// Memory for the values of any window. A window in which zeros are the majority is not collected.
template <class T>
std::vector<T> memory_for_window(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside)
{
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    const auto within = [&](std::ptrdiff_t size) { return std::min(side, static_cast<std::uint64_t>(size)); };
    const std::uint64_t pixels = within(source.width()) * within(source.height());
    std::vector<T> window;
    window.reserve(outside == padding::none ? pixels : std::min(side * side, 2 * pixels));
    return window;
}

/// The planes that both images have.
template <class T>
std::ptrdiff_t planes_of(const dm::image<const T>& source, const dm::image<T>& destination)
{
    return std::min(source.depth(), destination.depth());
}

template <class T>
void median_plain(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                  const dm::image<T>& destination)
{
    auto window = memory_for_window(source, radius, outside);
    for (std::ptrdiff_t z = 0; z < planes_of(source, destination); ++z) {
        const auto from = source.plane(z);
        const auto to = destination.plane(z);
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
            dm::stop_if_interrupted();
            if (outside == padding::none && y > 0 &&
                window_around(y, radius, source.height()) == window_around(y - 1, radius, source.height()))
                for (std::ptrdiff_t x = 0; x < source.width(); ++x) to(x, y) = to(x, y - 1);
            else
                filter_run(from, radius, outside, to, y, 0, source.width(), window);
        }
    }
}

/// A ring of the rows of one row of windows, with zeros around the image.
template <class T>
class padded_rows
{
  public:
    /// Allocates memory for planes of the size of this one.
    padded_rows(const dm::image<const T>& plane, std::ptrdiff_t radius)
        : radius_{radius},
          pitch_{plane.width() + 2 * radius + network_slack},
          rows_(static_cast<std::size_t>(pitch_ * (2 * radius + 1)))
    {}

    /// Starts with the first rows of a plane.
    void start(const dm::image<const T>& plane)
    {
        source_ = plane;
        std::fill(rows_.begin(), rows_.end(), T(0));
        for (std::ptrdiff_t y = 0; y < radius_; ++y) enter(y);
    }

    /// Copies row y, zeros below the image, over row y - 2 * radius - 1.
    void enter(std::ptrdiff_t y)
    {
        T* row = slot(y) + radius_;
        const auto bytes = static_cast<std::size_t>(source_.width()) * sizeof(T);
        if (y < source_.height())
            std::memcpy(row, source_.row(y), bytes);
        else
            std::memset(row, 0, bytes);
    }
    /// Points rows[0 .. 2 * radius] to the rows y - radius .. y + radius.
    void around(std::ptrdiff_t y, const T** rows)
    {
        for (std::ptrdiff_t i = 0; i <= 2 * radius_; ++i) rows[i] = slot(y - radius_ + i);
    }

  private:
    T* slot(std::ptrdiff_t y)
    {
        const std::ptrdiff_t slots = 2 * radius_ + 1;
        return rows_.data() + pitch_ * ((y + slots) % slots);
    }

    dm::image<const T> source_;
    std::ptrdiff_t radius_, pitch_;
    std::vector<T> rows_;
};

/// Radius 1 or 2, one plane. The networks see zeros outside the image; without padding, the pixels near its edges take
/// the plain form. `special` and `padded` have started with the source.
template <class Arch, class T>
void filter_by_networks(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                        const dm::image<T>& destination, special_rows<T>& special, padded_rows<T>& padded,
                        std::vector<T>& window)
{
    const std::ptrdiff_t width = source.width();
    const std::ptrdiff_t height = source.height();
    const T* rows[5];
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        special.inspect(y, 0, width);
        padded.enter(y + radius);
        padded.around(y, rows);
        const auto plain = [&](std::ptrdiff_t begin, std::ptrdiff_t end) {
            filter_run(source, radius, outside, destination, y, begin, end, window);
        };
        if (outside == padding::none && (y < radius || y >= height - radius || width <= 2 * radius)) {
            plain(0, width);
            continue;
        }
        median_row<Arch>(rows, radius, destination.row(y), width);
        if (outside == padding::zeros) continue;
        plain(0, radius);
        plain(width - radius, width);
    }
}

/// Whether zeros are the majority even in the window that covers most of the plane.
bool zeros_everywhere(std::ptrdiff_t radius, std::ptrdiff_t width, std::ptrdiff_t height)
{
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    const auto within = [&](std::ptrdiff_t size) { return std::min(side, static_cast<std::uint64_t>(size)); };
    return side * side > 2 * within(width) * within(height);
}

/// Calls work(y, z) for each row that both images have.
template <class T, class Work>
void for_each_row(const dm::image<const T>& source, const dm::image<T>& destination, Work&& work)
{
    for (std::ptrdiff_t z = 0; z < planes_of(source, destination); ++z)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) work(y, z);
}

/// Rows that are not contiguous and windows with a NaN or -0 take the plain form.
template <class T, class Arch>
void median_fast(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                 const dm::image<T>& destination)
{
    if (source.strides()[0] != 1 || destination.strides()[0] != 1)
        return median_plain<T>(source, radius, outside, destination);
    const std::ptrdiff_t width = source.width();
    if (radius == 0)
        return for_each_row(source, destination,
                            [&](auto y, auto z) { std::copy_n(source.row(y, z), width, destination.row(y, z)); });
    if (outside == padding::zeros && zeros_everywhere(radius, width, source.height()))
        return for_each_row(source, destination,
                            [&](auto y, auto z) { std::fill_n(destination.row(y, z), width, T(0)); });

    special_rows<T> special{source};
    auto window = memory_for_window(source, radius, outside);
    const bool by_networks = radius <= 2;
    padded_rows<T> padded{source, by_networks ? radius : 0};
    if (!by_networks) median_by_ranks<T>(source, radius, outside, destination);
    for (std::ptrdiff_t z = 0; z < planes_of(source, destination); ++z) {
        const auto from = source.plane(z);
        const auto to = destination.plane(z);
        dm::stop_if_interrupted();
        special.start(from);
        if (by_networks) {
            padded.start(from);
            filter_by_networks<Arch>(from, radius, outside, to, special, padded, window);
        } else
            for (std::ptrdiff_t y = 0; y < source.height(); ++y) special.inspect(y, 0, width);
        special.repair(radius, [&](std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end) {
            dm::stop_if_interrupted();
            filter_run(from, radius, outside, to, y, begin, end, window);
        });
    }
}

}  // namespace

template <class T>
dm::variants<median_kernel<T>> median_variants()
{
    static constexpr dm::variant<median_kernel<T>> table[] = {{"avx2", dm::cpu::avx2, median_fast<T, xsimd::avx2>},
                                                              {"sse2", dm::cpu::sse2, median_fast<T, xsimd::sse2>},
                                                              {"plain", dm::cpu::none, median_plain<T>}};
    return table;
}

template <class T>
void median_filter(const dm::image<const T>& source, std::int32_t radius, padding outside,
                   const dm::image<T>& destination)
{
    dm::require(source.data() != nullptr && destination.data() != nullptr && radius >= 0,
                dm::errors::parameters_invalid);
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    dm::require(outside == padding::none || side * side <= std::vector<T>().max_size(), vector_too_long);
    dm::require(source.width() == destination.width() && source.height() == destination.height(),
                dm::errors::different_size);
    dm::require(!dm::overlap(source, destination), dm::errors::out_of_place);

    dm::choose(median_variants<T>()).function(source, radius, outside, destination);
}

template dm::variants<median_kernel<float>> median_variants();
template dm::variants<median_kernel<double>> median_variants();
template void median_filter(const dm::image<const float>&, std::int32_t, padding, const dm::image<float>&);
template void median_filter(const dm::image<const double>&, std::int32_t, padding, const dm::image<double>&);

}  // namespace qorv::functions
