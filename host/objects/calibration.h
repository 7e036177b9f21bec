#pragma once

#include <array>
#include <string>

/// What is known of an image's scale and of how it was recorded.
namespace zentrix::host {

/// The scale along one dimension: pixel i is at first + i * step.
struct axis_scale
{
    double step = 0;   ///< from one pixel to the next, in `unit`; 0: unknown
    double first = 0;  ///< position of pixel 0, in `unit`
    std::string unit;  ///< UTF-8, as files have it: "nm", "1/nm", "µm", ...; empty: a number without a unit
};

/// Plain data that an image carries from the file that it was read from to the files that are written from it.
struct calibration
{
    std::array<axis_scale, 3> axes;  ///< x, y, z
    double kilovolts = 0;            ///< accelerating voltage; 0: unknown
};

/// The length of one `unit` in nanometres: "m", "mm", "um" (also "µm", "micron"), "nm", "A" (also "Å", "angstrom"),
/// "pm"; 0 for other units.
double nanometres_in(const std::string& unit);

/// The pixel size in nanometres, if x and y have the same step (to 1e-3 of it) in a unit of length; otherwise 0.
double square_pixel_nm(const calibration& about);

}  // namespace zentrix::host
