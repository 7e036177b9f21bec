#pragma once

#include <cstdint>
#include <string>

#include "panel/rules/load.h"
#include "panel/rules/tag_record.h"

/// Explanations of the controls for their tooltips: several lines, ASCII.
namespace qorv::panel {

/// What a row shows at present.
struct row_of_page
{
    const coefficient& shown;
    const row_values& values;
};

/// Full name, unit, sign, the value with all its digits, and its name and value in the notation C10, C12, phi12 ...
std::string value_tip(const row_of_page& row);
std::string value_arrows_tip(const row_of_page& row);
std::string step_tip(const row_of_page& row);
/// Direction of the angle and the ways to change it.
std::string angle_tip(const row_of_page& row);
std::string angle_arrows_tip(const row_of_page& row);

/// The unit of a coefficient on its page: nm, um or mm.
const char* unit_of(const coefficient& shown);

inline constexpr char modulus_header_tip[] = "Modulus and its step, in the unit in brackets";
inline constexpr char angle_header_tip[] =
    "Azimuth angle in degrees: 0 is right, counter-clockwise on the displayed image";
inline constexpr char value_header_tip[] = "The coefficient, or its modulus";
inline constexpr char step_header_tip[] = "The change by one click on the arrows next to the value";
inline constexpr char tabs_tip[] =
    "Rotation: the round coefficients C1, C3, C5\n"
    "Basic: A1, B2, A2\n"
    "3rd: S3, A3\n"
    "4th: B4, D4, A4\n"
    "5th: A5, R5, S5";
inline constexpr char display_tip[] = "What the picture shows of the complex wave";
inline constexpr char pctf_tip[] = "Phase contrast transfer function: shows or hides sin(chi) of these coefficients";
inline constexpr char apply_tip[] = "Takes the corrected wave as the new wave";

}  // namespace qorv::panel
