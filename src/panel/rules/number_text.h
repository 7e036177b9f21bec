#pragma once

#include <string>
#include <string_view>

/// How the pages' number fields show and read their values.
namespace qorv::panel {

/// Six significant digits, trailing zeros cut, an exponent where it is shorter: 0.5, 1e-07, 1.23457e+06.
std::string text_of(float value);

/// Reads the number that a text starts with, after blanks; what follows it does not count. Returns false and leaves
/// `value` alone where there is none yet (an empty field, a lone sign), so that a value can be typed bit by bit.
bool read_number(std::string_view text, float& value);

}  // namespace qorv::panel
