#include "host/program/json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace zentrix::program {

std::string json_string(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            (result += '\\') += c;
        else if (c == '\n')
            result += "\\n";
        else if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
            result += escape.data();
        } else
            result += c;
    }
    return result + "\"";
}

std::string plain_number(double value)
{
    std::array<char, 32> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), end};
}

std::string json_number(double value) { return std::isfinite(value) ? plain_number(value) : "null"; }

std::string json_object(const std::vector<std::pair<std::string, std::string>>& members)
{
    std::string result = "{";
    for (const auto& [name, value] : members)
        result += (result.size() > 1 ? ", " : "") + json_string(name) + ": " + value;
    return result + "}";
}

std::string json_array(const std::vector<std::string>& values)
{
    std::string result = "[";
    for (const auto& value : values) result += (result.size() > 1 ? ", " : "") + value;
    return result + "]";
}

}  // namespace zentrix::program
