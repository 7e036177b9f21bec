#pragma once

#include <string>
#include <vector>

#include "host/pictures/drawing.h"
#include "host/pictures/plot.h"
#include "lens/contrast_profile.h"

/// Plots along the spatial frequency.
namespace zentrix::host {

constexpr rgb curve_ink{0, 90, 160}, envelope_ink{213, 94, 0}, limit_ink{0, 120, 80}, power_ink{120, 120, 120};

/// The unit of frequencies that suits the largest.
struct frequency_unit
{
    double per_nm;  ///< of one 1/nm in this unit
    const char *name, *spacing;
};

frequency_unit frequency_unit_for(double limit);

/// A line through all points with gaps as long as its dashes. dash: [pixels]
void dashed(drawing& on, const std::vector<point>& line, double width, double dash, rgb ink);

/// Plots the contrast up to `limit` [1/nm] with its envelope, zeros and information limit, and axes.
/// area     inside of the axes, whole pixels
/// letters  size, see text_width
/// power    radial means in equal steps from frequency zero to the limit, drawn as their logarithm scaled to the upper
///          half of the plot; empty: not drawn
void plot_contrast(drawing& on, const box& area, const lens::contrast_profile& profile, double limit, double letters,
                   const std::vector<double>& power = {});

/// The same as a picture of its own, with a line that names the curves.
picture picture_of_contrast(int width, int height, const lens::contrast_profile& profile, double limit, double letters,
                            const std::vector<double>& power);

}  // namespace zentrix::host
