#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

/// Numbers as text, with a decimal point whatever the language of the machine.
namespace zentrix::host {

/// The shortest text that reads back as the same number: "3", "0.1", "1e+30", "inf", "nan".
template <class T>
std::string number_text(T value)
{
    char digits[32];
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    return {digits, written.ptr};
}

/// The number that the whole text spells: "12", "-1.5e3", "-inf", "nan". Nothing for any other text, for a number that
/// the type cannot hold, and for one with a plus sign or blanks around it.
template <class T>
std::optional<T> parse_number(std::string_view text)
{
    T value{};
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && stop == text.data() + text.size() ? std::optional{value} : std::nullopt;
}

/// The shortest decimal number for which `fits` holds; `value` itself if there is none. For numbers that a file has
/// rounded: 0.02 rather than 0.0199999996.
template <class Fits>
double shortest_number(double value, Fits fits)
{
    for (int digits = 1; digits < 17; ++digits) {
        char text[32];
        const auto written = std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits);
        const auto number = parse_number<double>({text, static_cast<std::size_t>(written.ptr - text)});
        if (number && fits(*number)) return *number;
    }
    return value;
}

}  // namespace zentrix::host
