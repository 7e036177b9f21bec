#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lens/aberrations.h"

/// The record of tags that the control panel and its handler share, seen from the handler's side.
/// src/panel/rules/tag_record.h has the same keys: panel and handler are parts of two programs that share no source.
namespace zentrix::lens {

/// A tag and the value it starts with.
struct panel_tag
{
    std::string key;
    bool whole;  ///< a long; otherwise a float
    double start;
};

/// Every tag of the record: coefficients as in `lens`, all pages and controls enabled, the `mode` of display (1 to 5). A
/// step of a modulus turns the phase at 25 mrad and 300 kV by a few tenths of a radian, so that a click is seen and does
/// not overwhelm (C3's by a few radians: its field has no room for a finer one); an angle goes in steps of 5 degrees.
/// Throws  std::invalid_argument when `lens` has an angle between degrees, or a modulus beyond a float
std::vector<panel_tag> panel_tags(const aberrations& lens, int mode);

/// "ModA1"; of a round coefficient its name alone, "C1".
std::string modulus_key(coefficient which);
/// "AngA1"; empty for a round coefficient.
std::string angle_key(coefficient which);

inline constexpr char display_mode_key[] =
    "DisplayMode";                                 ///< 1 real, 2 imaginary, 3 modulus, 4 log of modulus, 5 phase
inline constexpr char has_pctf_key[] = "hasPCTF";  ///< whether the phase contrast transfer function is shown

/// The coefficients in the tags. `value_of` gives a tag's value by its key, 0 where there is none.
/// A tag is a float, which cannot hold 2.3; what is meant is the shortest decimal number that the float stands for,
/// since that is what the user typed and reads, and what the command line is given for the same correction.
aberrations read_aberrations(const std::function<float(const std::string& key)>& value_of);

}  // namespace zentrix::lens
