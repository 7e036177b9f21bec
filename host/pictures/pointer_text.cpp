#include "host/pictures/pointer_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string_view>

#include "host/pictures/scale_bar.h"

namespace zentrix::host {

namespace {

constexpr int value_digits = 4;

const char* name_of(const image& pixels, display_mode mode)
{
    switch (mode) {
        case display_mode::real: return pixels.type().meaning == element_class::complex ? "real " : "";
        case display_mode::imaginary: return "imaginary ";
        case display_mode::modulus: return "modulus ";
        case display_mode::log_modulus: return "ln modulus ";
        case display_mode::phase: return "phase ";
    }
    return "";
}

}  // namespace

std::string short_number(float value)
{
    if (std::isnan(value)) return "not a number";
    if (std::isinf(value)) return value < 0 ? "\u2212\u221e" : "\u221e";
    char digits[32];
    const auto written =
        std::to_chars(digits, digits + sizeof digits, std::abs(value), std::chars_format::general, value_digits);
    std::string text{value < 0 ? "\u2212" : ""};
    return text.append(digits, written.ptr);
}

std::string place_text(pixel_place place, double pixel_nm)
{
    std::string text;
    if (pixel_nm > 0) {
        const int digits = digits_for(round_number_below(pixel_nm));
        text.append("x ").append(number_label(place.x * pixel_nm, digits)).append(" nm, y ");
        text.append(number_label(place.y * pixel_nm, digits)).append(" nm ");
    }
    return text.append("(").append(std::to_string(place.x)).append(", ").append(std::to_string(place.y)).append(")");
}

std::string frequency_text(double right, double up)
{
    const double frequency = std::hypot(right, up);
    if (!(frequency > 0)) return "0";
    char text[100];
    const long degrees = std::lround(std::atan2(up, right) * 180 / std::numbers::pi);
    std::snprintf(text, sizeof text, "%.3g /nm (%.3g nm), %ld\u00b0", frequency, 1 / frequency, (degrees + 360) % 360);
    return text;
}

std::string zoom_text(double zoom)
{
    const double percent = 100 * zoom;
    return number_label(percent, percent < 9.95 ? 1 : 0).append(" %");
}

std::string value_text(const image& pixels, pixel_place place, display_mode mode)
{
    float value = 0;
    displayed_values(pixels, {&place, 1}, mode, &value);
    std::string text = name_of(pixels, mode);
    text.append(short_number(value));
    return mode == display_mode::phase ? text.append(" rad") : text;
}

}  // namespace zentrix::host
