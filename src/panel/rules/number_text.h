#pragma once

#include <string>
#include <string_view>

/// The format of the pages' number fields.
namespace qorv::panel {

/// Six significant digits, trailing zeros cut, an exponent where it is shorter: 0.5, 1e-07, 1.23457e+06.
std::string text_of(float value);

/// The shortest text that reads as exactly this number.
std::string full_text_of(float value);

enum class number_state
{
    complete,
    unfinished,  ///< the start of a number: an empty text, a lone sign, "1e-"
    wrong        ///< no number, whatever is typed next, or one that a float cannot hold
};

/// A text that is read as a number.
struct typed_number
{
    number_state state;
    float value = 0;  ///< if complete
};

/// Reads a text as one decimal number. The decimal point may be a comma; digits are not grouped. Blanks around the
/// number are ignored, any other text makes it wrong.
typed_number read_number(std::string_view text);

}  // namespace qorv::panel
