#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lens/aberrations.h"

/// The record of tags that the control panel and its handler share, seen from the handler's side.
/// src/panel/rules/tag_record.h has the same keys: panel and handler are parts of two programs that share no source.
namespace zentrix::lens {

/// A tag and its initial value.
struct panel_tag
{
    std::string key;
    bool is_long;  ///< otherwise a float
    double start;
};

/// All tags: the coefficients of `lens`, every page and control enabled, the display `mode` (1 to 5). A step of a
/// modulus changes the phase at 25 mrad and 300 kV by a few tenths of a radian, so that one click is visible but not
/// too much (C3: a few radians, because its field has no room for a finer step). Angles have steps of 5 degrees.
/// Throws  std::invalid_argument when `lens` has an angle that is not in whole degrees, or a modulus beyond a float
std::vector<panel_tag> panel_tags(const aberrations& lens, int mode);

/// The same direction from 0 up to 360 degrees, as the panel has it.
double panel_angle(double degrees);

/// "ModA1"; for a round coefficient just its name, "C1".
std::string modulus_key(coefficient which);
/// "AngA1"; empty for a round coefficient.
std::string angle_key(coefficient which);

/// 1 real, 2 imaginary, 3 modulus, 4 log of modulus, 5 phase.
inline constexpr char display_mode_key[] = "DisplayMode";
/// Whether the phase contrast transfer function is shown.
inline constexpr char has_pctf_key[] = "hasPCTF";

/// The coefficients in the tags. `value_of` returns the value of a tag, 0 if there is none.
/// A float cannot hold 2.3. So that the result is the same as on the command line, each float is read as the shortest
/// decimal number that rounds to it, which is the number that the user typed and sees.
aberrations read_aberrations(const std::function<float(const std::string& key)>& value_of);

}  // namespace zentrix::lens
