#include "host/windows/estimate_text.h"

#include <cmath>

#include "host/text/number_text.h"

namespace zentrix::host {

namespace {

/// With as many digits as the uncertainty justifies: two of its own.
std::string rounded(double value, double uncertainty)
{
    if (!(uncertainty > 0) || !std::isfinite(uncertainty)) return number_text(static_cast<float>(value));
    const double unit = std::pow(10.0, std::floor(std::log10(uncertainty)) - 1);
    const double whole = std::round(value / unit);
    return number_text(static_cast<float>(unit < 1 ? whole / std::round(1 / unit) : whole * unit));
}

std::string line_of(const estimated_coefficient& one)
{
    const auto& about = lens::traits(one.which);
    const std::string name{about.name}, unit{about.unit};
    if (!one.determined) return name + "  not determined: " + one.reason;
    std::string text = name + "  " + rounded(one.value.modulus, one.uncertainty);
    if (about.symmetry != 0) text += " at " + rounded(one.value.angle_degrees, one.angle_uncertainty) + " degrees,";
    return text + " " + unit + ", \u00b1 " + rounded(one.uncertainty, one.uncertainty) + " " + unit;
}

}  // namespace

std::string text_of(const estimate& found)
{
    std::string text;
    for (const auto& one : found.coefficients) text += line_of(one) + "\r\n";
    if (!found.any_determined()) text += "Nothing is determined. The coefficients stay as they are.\r\n";
    return text + "By " + found.criterion + "; " + std::to_string(found.agreeing) + " of " +
           std::to_string(found.starts) + " starts agree; " + std::to_string(found.evaluations) + " evaluations in " +
           number_text(static_cast<float>(std::round(found.seconds * 10) / 10)) + " s.";
}

}  // namespace zentrix::host
