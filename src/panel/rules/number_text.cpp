#include "panel/rules/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace qorv::panel {

namespace {

std::string_view without_blanks(std::string_view text)
{
    const auto start = text.find_first_not_of(" \t");
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

/// Reads all of a text in the notation of the C language. "nan" and "inf" are no numbers here.
typed_number read_whole(std::string_view text)
{
    float number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || !std::isfinite(number)) return {number_state::wrong};
    return {number_state::complete, number};
}

}  // namespace

std::string text_of(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general,
                                   std::numeric_limits<float>::digits10);
    return {text, end.ptr};
}

std::string full_text_of(float value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

typed_number read_number(std::string_view text)
{
    std::string number{without_blanks(text)};
    std::replace(number.begin(), number.end(), ',', '.');
    if (number.starts_with('+') && !number.starts_with("+-")) number.erase(0, 1);
    const typed_number read = read_whole(number);
    if (read.state == number_state::complete) return read;
    // The start of a number becomes one by one more digit.
    const bool unfinished = read_whole(number + '0').state == number_state::complete;
    return {unfinished ? number_state::unfinished : number_state::wrong};
}

}  // namespace qorv::panel
