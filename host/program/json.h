#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zentrix::program {

/// Text as a JSON string with its quotes; control characters are escaped, UTF-8 stays.
std::string json_string(std::string_view text);

/// A number in the fewest digits that read back as the same value. JSON has no infinities and no not-a-number: null.
std::string json_number(double value);

/// {"name": value, ...} and [value, ...] of values that are JSON already.
std::string json_object(const std::vector<std::pair<std::string, std::string>>& members);
std::string json_array(const std::vector<std::string>& values);

/// A number for people, in the fewest digits that read back as the same value.
std::string plain_number(double value);

}  // namespace zentrix::program
