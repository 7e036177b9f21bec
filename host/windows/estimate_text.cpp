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

std::string value_text(double value, double uncertainty)
{
    return rounded(value, uncertainty) + " \u00b1 " + rounded(uncertainty, uncertainty);
}

std::string line_of(const estimated_coefficient& one)
{
    const auto& about = lens::traits(one.which);
    const std::string name{about.name}, unit{about.unit};
    if (!one.determined) return name + "  not determined: " + one.reason;
    std::string text = name + "  " + value_text(one.value.modulus, one.uncertainty) + " " + unit;
    const double angle = one.value.angle_degrees + (one.value.angle_degrees < 0 ? 360 : 0);  // as on the panel
    if (about.symmetry != 0) text += " at " + value_text(angle, one.angle_uncertainty) + " degrees";
    return text;
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
