#pragma once

#include <optional>
#include <string>
#include <utility>

/// Typed numbers, with a decimal point whatever the language of the machine. The physics needs finite numbers and
/// accepts a plus sign, unlike the parser of the host, on which it does not depend.
namespace zentrix::lens {

/// The finite number that the whole text spells ("-1.5e3", "+2"); nothing for any other text.
std::optional<double> parse_number(const std::string& text);

/// The same for a number that a person types: blanks around it, and a comma instead of the point ("0,5").
std::optional<double> parse_typed_number(std::string text);

/// Two finite numbers separated by a comma ("0.5,-2"); nothing for any other text.
std::optional<std::pair<double, double>> parse_pair(const std::string& text);

}  // namespace zentrix::lens
