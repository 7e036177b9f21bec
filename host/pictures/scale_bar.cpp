#include "host/pictures/scale_bar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zentrix::host {

namespace {

struct length_unit
{
    double nanometres;
    const char* name;
    double least;  ///< number of this unit that is shown in it
};

constexpr length_unit length_units[] = {{1e9, "m", 1}, {1e6, "mm", 1}, {1e3, "µm", 1}, {1, "nm", 0.1}, {1e-3, "pm", 0}};

/// A division may miss a round number by rounding, 0.1 / 0.02 may be below 5: such numbers count as round.
constexpr double nearly = 1 - 1e-9;

std::string unit_label(const std::string& unit)
{
    return unit.starts_with("1/") ? unit.substr(2) + superscript(-1) : unit;
}

std::string labelled(double value, const std::string& unit)
{
    return number_label(value, digits_for(value)) + (unit.empty() ? "" : " " + unit);
}

}  // namespace

double round_number_below(double limit)
{
    const double power = std::pow(10, std::floor(std::log10(limit)));
    for (const double digit : {10.0, 5.0, 2.0})
        if (digit * power * nearly <= limit) return digit * power;
    return power;
}

int digits_for(double round_step)
{
    return std::clamp(static_cast<int>(-std::floor(std::log10(round_step) + 1e-9)), 0, 15);
}

std::string number_label(double value, int digits)
{
    char text[400];
    std::snprintf(text, sizeof text, "%.*f", digits, std::abs(value));
    std::string label{text};
    std::ranges::replace(label, ',', '.');  // of the machine's language
    const bool is_zero = label.find_first_not_of("0.") == std::string::npos;
    return value < 0 && !is_zero ? "\u2212" + label : label;
}

std::string superscript(int exponent)
{
    constexpr const char* digits[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string raised = exponent < 0 ? "⁻" : "";
    for (const char digit : std::to_string(std::abs(exponent))) raised += digits[digit - '0'];
    return raised;
}

bar_length round_bar(const axis_scale& along, double longest_pixels)
{
    const double step = std::abs(along.step);
    if (!(step > 0) || !std::isfinite(step) || !(longest_pixels > 0)) return {};
    const double unit_nm = nanometres_in(along.unit);
    const double length = round_number_below(longest_pixels * step * (unit_nm > 0 ? unit_nm : 1));
    if (unit_nm <= 0) return {length / step, labelled(length, unit_label(along.unit))};
    for (const auto& [nanometres, name, least] : length_units)
        if (length >= least * nanometres * nearly)
            return {length / (step * unit_nm), labelled(length / nanometres, name)};
    return {};
}

}  // namespace zentrix::host
