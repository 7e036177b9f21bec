#include "lens/numbers.h"

#include <charconv>
#include <cmath>

namespace zentrix::lens {

std::optional<double> parse_number(const std::string& text)
{
    const char* begin = text.data();
    const char* const end = begin + text.size();
    if (begin != end && *begin == '+' && !(text.size() > 1 && text[1] == '-'))
        ++begin;  // from_chars accepts no plus sign
    double value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<double> parse_typed_number(std::string text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return std::nullopt;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);
    const auto comma = text.find(',');
    if (comma != std::string::npos && text.find('.') == std::string::npos) text[comma] = '.';
    return parse_number(text);
}

std::optional<std::pair<double, double>> parse_pair(const std::string& text)
{
    const auto comma = text.find(',');
    if (comma == std::string::npos) return std::nullopt;
    const auto first = parse_number(text.substr(0, comma));
    const auto second = parse_number(text.substr(comma + 1));
    if (!first || !second) return std::nullopt;
    return std::pair{*first, *second};
}

}  // namespace zentrix::lens
