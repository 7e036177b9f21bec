#pragma once

#include <optional>
#include <string>
#include <utility>

/// Numbers as they are typed; the C locale's decimal point whatever the machine's language.
namespace zentrix::lens {

/// The finite number that the whole of `text` spells ("-1.5e3"), or nothing.
std::optional<double> parse_number(const std::string& text);

/// Two finite numbers with a comma between ("0.5,-2"), or nothing.
std::optional<std::pair<double, double>> parse_pair(const std::string& text);

}  // namespace zentrix::lens
