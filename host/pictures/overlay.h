#pragma once

#include <cstdint>
#include <vector>

#include "host/pictures/drawing.h"
#include "host/pictures/scale_bar.h"
#include "host/pictures/view_map.h"

/// What a window draws over the picture that it shows.
namespace zentrix::host {

/// A drawing of which only the pixels with ink are kept, at its place in an area.
class overlay
{
  public:
    void add(const drawing& drawn, int left, int top);
    /// Draws on the pixels 0x00RRGGBB of that part of the area, rows without gaps.
    void paint(const pixel_box& part, std::uint32_t* pixels) const;
    bool empty() const { return inked_.empty(); }

  private:
    struct inked_pixel
    {
        int x, y;
        rgb ink;
        float opacity;
    };
    std::vector<inked_pixel> inked_;
};

/// A scale bar with its length above it, white with a dark outline.
/// zoom     pixels of the drawing along one of the image
/// letters  size, see text_width
/// Returns  a drawing that is not larger than `limit`
drawing drawing_of_bar(const bar_length& bar, double zoom, double letters, extent limit);

/// Adds a scale bar in the lower left corner of the visible picture if the pixel size is known and there is room.
void add_scale_bar(overlay& to, const view_map& map, double pixel_nm, double letters);

/// Adds the wheel of the phases' colours in the lower right corner if there is room.
void add_phase_wheel(overlay& to, const view_map& map, double letters);

/// The frequencies of the pixels of a spectrum with frequency zero at pixel (width / 2, height / 2).
struct frequency_scale
{
    double right = 0, down = 0;  ///< from a pixel to the next one [1/nm]
    point zero{};                ///< the middle of the pixel of frequency zero, from the image's corner [pixels]
};

/// width, height  of the wave and its spectrum [pixels]
frequency_scale frequencies_of(extent spectrum, double pixel_nm);

/// The frequencies [1/nm] at which rings are drawn: up to five multiples of a round number, up to `largest`.
std::vector<double> ring_frequencies(double largest);

/// Adds rings with their frequencies around zero: ellipses if the pixels of the spectrum are not square.
void add_frequency_rings(overlay& to, const view_map& map, const frequency_scale& scale, double letters);

}  // namespace zentrix::host
