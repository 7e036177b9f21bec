#include "functions/rank/median_filter.h"
#include "functions/rank/median_filter_ranks.h"
#include "functions/rank/median_window.h"
#include "functions/rank/special_values.h"

#include <cstring>

namespace qorv::functions {
namespace {

/// The rows that one row of windows sees, with zeros around the image. A ring: each row enters once.
template <class T>
class padded_rows
{
  public:
    padded_rows(const dm::image<const T>& source, std::ptrdiff_t radius)
        : source_{source},
          radius_{radius},
          pitch_{source.width() + 2 * radius + network_slack},
          rows_(static_cast<std::size_t>(pitch_ * (2 * radius + 1)))
    {
        for (std::ptrdiff_t y = 0; y < radius; ++y) enter(y);
    }

    /// Row y is the last of the next windows.
    void enter(std::ptrdiff_t y)
    {
        T* row = slot(y) + radius_;
        const auto bytes = static_cast<std::size_t>(source_.width()) * sizeof(T);
        if (y < source_.height())
            std::memcpy(row, source_.row(y), bytes);
        else
            std::memset(row, 0, bytes);
    }
    /// Rows y - radius to y + radius.
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

    const dm::image<const T>& source_;
    std::ptrdiff_t radius_, pitch_;
    std::vector<T> rows_;
};

/// Windows that reach outside see zeros there; without padding they are done again.
template <class T>
void filter_by_network(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                       const dm::image<T>& destination, special_rows<T>& special)
{
    const std::ptrdiff_t width = source.width();
    const std::ptrdiff_t height = source.height();
    padded_rows<T> padded{source, radius};
    const T* rows[5];
    std::vector<T> window;
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        special.look(y, 0, width);
        padded.enter(y + radius);
        padded.around(y, rows);
        const auto plain = [&](std::ptrdiff_t begin, std::ptrdiff_t end) {
            median_stretch(source, radius, outside, destination, y, begin, end, window);
        };
        if (outside == padding::none && (y < radius || y >= height - radius || width <= 2 * radius)) {
            plain(0, width);
            continue;
        }
        median_row_by_network(rows, radius, destination.row(y), width);
        if (outside == padding::zeros) continue;
        plain(0, radius);
        plain(width - radius, width);
    }
}

/// Whether the zeros are the majority even of the window that sees most of the plane.
bool zeros_rule(std::ptrdiff_t radius, std::ptrdiff_t width, std::ptrdiff_t height)
{
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    const auto within = [&](std::ptrdiff_t size) { return std::min(side, static_cast<std::uint64_t>(size)); };
    return side * side > 2 * within(width) * within(height);
}

}  // namespace

template <class T>
void median_vector(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                   const dm::image<T>& destination)
{
    if (source.strides()[0] != 1 || destination.strides()[0] != 1)
        return median_plain<T>(source, radius, outside, destination);
    const std::ptrdiff_t width = source.width();
    if (radius == 0) {
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) std::copy_n(source.row(y), width, destination.row(y));
        return;
    }
    if (outside == padding::zeros && zeros_rule(radius, width, source.height())) {
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) std::fill_n(destination.row(y), width, T(0));
        return;
    }

    special_rows<T> special{source};
    if (radius <= 2)
        filter_by_network(source, radius, outside, destination, special);
    else {
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) special.look(y, 0, width);
        median_plane_by_ranks<T>(source, radius, outside, destination);
    }
    std::vector<T> window;
    special.repair(radius, [&](std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end) {
        median_stretch(source, radius, outside, destination, y, begin, end, window);
    });
}

template median_kernel<float> median_vector<float>;
template median_kernel<double> median_vector<double>;

}  // namespace qorv::functions
