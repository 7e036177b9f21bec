#include "host/files/tiff_description.h"

#include <boost/nowide/utf/convert.hpp>
#include <cmath>
#include <optional>

#include "host/text/number_text.h"

namespace zentrix::host {

namespace {

constexpr const char* axis_names[] = {"x", "y", "z"};

/// The value of a key; nothing for a description that has another form.
std::optional<std::string_view> value_of(std::string_view description, std::string_view key)
{
    if (!description.starts_with("ImageJ=")) return std::nullopt;
    while (!description.empty()) {
        const auto end = std::min(description.find_first_of("\r\n"), description.size());
        const std::string_view line = description.substr(0, end);
        if (line.size() > key.size() && line.starts_with(key) && line[key.size()] == '=')
            return line.substr(key.size() + 1);
        description.remove_prefix(std::min(end + 1, description.size()));
    }
    return std::nullopt;
}

/// A finite number; 0 if there is none.
double number_of(std::string_view description, const std::string& key)
{
    const auto text = value_of(description, key);
    const auto number = text ? parse_number<double>(*text) : std::nullopt;
    return number && std::isfinite(*number) ? *number : 0;
}

/// Replaces \u00B5 by the character, as ImageJ writes those that are not ASCII.
std::string unescaped(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned value = 0;
        const auto digits = text.substr(i, 6);
        if (digits.size() == 6 && digits.starts_with("\\u") &&
            std::from_chars(digits.data() + 2, digits.data() + 6, value, 16).ptr == digits.data() + 6) {
            const char16_t character[] = {static_cast<char16_t>(value)};
            result += boost::nowide::utf::convert_string<char>(character, character + 1);
            i += 5;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char16_t c : boost::nowide::utf::convert_string<char16_t>(text.data(), text.data() + text.size())) {
        if (c >= ' ' && c < 127) {
            result += static_cast<char>(c);
            continue;
        }
        constexpr char digits[] = "0123456789ABCDEF";
        result += "\\u";
        for (const int shift : {12, 8, 4, 0}) result += digits[(c >> shift) & 15];
    }
    return result;
}

/// The number of our own key, which has all digits, if it agrees with the one of ImageJ's keys and the tags, so that
/// it was not left there by a program that changed these.
double exact(double ours, double theirs)
{
    return theirs != 0 && std::abs(ours - theirs) <= 1e-5 * std::abs(theirs) ? ours : theirs;
}

/// The step along x or y.
double step_of(double per_unit, bool is_described, double unit_nm)
{
    constexpr double largest_nm = 20000;  // larger ones are resolutions for printing
    const double unit = is_described ? 1 : unit_nm;
    const double step = unit / per_unit;
    if (!(per_unit > 0) || !std::isfinite(step) || (!is_described && step > largest_nm)) return 0;
    return shortest_number(step,
                           [&](double one) { return static_cast<float>(unit / one) == static_cast<float>(per_unit); });
}

}  // namespace

std::uint32_t images_in(std::string_view description)
{
    const auto text = value_of(description, "images");
    return text ? parse_number<std::uint32_t>(*text).value_or(1) : 1;
}

calibration tiff_scale(std::string_view description, const tiff_resolution& resolution)
{
    calibration about;
    const auto unit = value_of(description, "unit");
    const bool is_described = unit && *unit != "pixel";
    const std::string name = is_described ? unescaped(*unit) : "nm";
    const double steps[] = {step_of(resolution.x, is_described, resolution.unit_nm),
                            step_of(resolution.y, is_described, resolution.unit_nm),
                            is_described ? number_of(description, "spacing") : 0};
    for (std::size_t d = 0; d < about.axes.size(); ++d) {
        if (steps[d] == 0) continue;
        const std::string axis = axis_names[d];
        const double step = exact(number_of(description, "step_" + axis), steps[d]);
        const double first = -number_of(description, axis + "origin") * step;  // the origin is in pixels
        about.axes[d] = {step, first == 0 ? 0 : exact(number_of(description, "first_" + axis), first), name};
    }
    about.kilovolts = std::max(0.0, number_of(description, "kilovolts"));
    return about;
}

std::string tiff_description(const calibration& about, std::uint32_t images)
{
    std::string text;
    const auto add = [&](const std::string& key, const std::string& value) { text += key + "=" + value + "\n"; };
    if (images > 1) {
        add("images", std::to_string(images));
        add("slices", std::to_string(images));
    }
    if (about.axes[0].step > 0) {
        add("unit", escaped(about.axes[0].unit));
        if (about.axes[2].step > 0 && about.axes[2].unit == about.axes[0].unit)
            add("spacing", number_text(about.axes[2].step));
        for (std::size_t d = 0; d < about.axes.size(); ++d) {
            const auto& [step, first, unit] = about.axes[d];
            if (step <= 0 || unit != about.axes[0].unit) continue;
            add(std::string{"step_"} + axis_names[d], number_text(step));
            if (first == 0) continue;
            add(axis_names[d] + std::string{"origin"}, number_text(-first / step));
            add(std::string{"first_"} + axis_names[d], number_text(first));
        }
    }
    if (about.kilovolts > 0) add("kilovolts", number_text(about.kilovolts));
    return text.empty() ? text : "ImageJ=1.53k\n" + text;
}

}  // namespace zentrix::host
