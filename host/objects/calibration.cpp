#include "host/objects/calibration.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace zentrix::host {

namespace {

struct unit_of_length
{
    std::string_view name;
    double nanometres;
};

constexpr unit_of_length units_of_length[] = {
    {"m", 1e9}, {"mm", 1e6},     {"um", 1e3},     {"\u00b5m", 1e3},  {"\u03bcm", 1e3},  {"micron", 1e3}, {"nm", 1},
    {"A", 0.1}, {"\u00c5", 0.1}, {"\u212b", 0.1}, {"angstrom", 0.1}, {"Angstrom", 0.1}, {"pm", 1e-3},
};

}  // namespace

double nanometres_in(const std::string& unit)
{
    const auto* const found = std::find_if(std::begin(units_of_length), std::end(units_of_length),
                                           [&](const auto& u) { return u.name == unit; });
    return found == std::end(units_of_length) ? 0 : found->nanometres;
}

double square_pixel_nm(const calibration& about)
{
    const double x = about.axes[0].step * nanometres_in(about.axes[0].unit);
    const double y = about.axes[1].step * nanometres_in(about.axes[1].unit);
    return x > 0 && std::abs(x - y) <= 1e-3 * x ? x : 0;
}

}  // namespace zentrix::host
