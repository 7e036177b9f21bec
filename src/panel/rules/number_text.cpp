#include "panel/rules/number_text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace qorv::panel {

std::string text_of(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general,
                                   std::numeric_limits<float>::digits10);
    return {text, end.ptr};
}

bool read_number(std::string_view text, float& value)
{
    const auto start = text.find_first_not_of(" \t");
    if (start == text.npos) return false;
    text.remove_prefix(start);
    if (text.starts_with('+') && !text.substr(1).starts_with('-')) text.remove_prefix(1);
    float number = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc{}) return false;
    if (!std::isfinite(number)) return false;  // from_chars accepts "nan" and "inf"
    value = number;
    return true;
}

}  // namespace qorv::panel
