#pragma once

#include <string>
#include <string_view>

/// The format of the pages' number fields.
namespace qorv::panel {

/// Six significant digits, trailing zeros cut, an exponent where it is shorter: 0.5, 1e-07, 1.23457e+06.
std::string text_of(float value);

/// Reads the number at the start of a text. Leading blanks and trailing text are ignored. Returns false and leaves
/// `value` unchanged if there is no number yet (an empty field, a lone sign), because fields are read while the user
/// types.
bool read_number(std::string_view text, float& value);

}  // namespace qorv::panel
