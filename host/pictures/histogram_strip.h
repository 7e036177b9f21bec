#pragma once

#include <cstdint>
#include <span>

#include "host/pictures/drawing.h"
#include "host/pictures/grey_limits.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

/// What a user can drag in a histogram.
enum class limit_handle
{
    none,
    black,
    white,
    both  ///< the range between them, which keeps its width
};

/// A histogram of displayed values with the limits of the greys as handles.
class histogram_strip
{
  public:
    /// width, height  [screen pixels]
    /// letters        size, see text_width
    /// range          of the counted values
    /// limits         the present ones; the axis includes both
    histogram_strip(int width, int height, double letters, grey_limits range, grey_limits limits);

    /// Horizontal places [pixels].
    double place_of(float value) const;
    float value_at(double x) const;

    /// What is at a place: a handle up to half a letter away, or the range between the handles.
    limit_handle handle_at(double x, grey_limits limits) const;
    /// The limits after a handle was dragged from a value to another. Black stays below white, by at least a pixel.
    grey_limits dragged(limit_handle handle, grey_limits limits, float from, float to) const;

    /// The histogram, with the greys of its values below, the handles and their values. Counts are drawn by their
    /// square roots, so that small ones are visible.
    /// counts  of equal parts of the range
    picture paint(std::span<const std::uint32_t> counts, grey_limits limits) const;

  private:
    void draw_bars(drawing& on, const box& area, std::span<const std::uint32_t> counts) const;
    void draw_handles(drawing& on, const box& bars, grey_limits limits) const;

    int width_, height_;
    double letters_, margin_;
    grey_limits range_;  ///< of the counts
    double low_, high_;  ///< of the axis
};

}  // namespace zentrix::host
