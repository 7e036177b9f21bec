#include "panel/rules/tip_texts.h"

#include <cstring>

#include "panel/rules/number_text.h"

namespace qorv::panel {

namespace {

/// The term of a coefficient in the aberration function: theta^order cos(angle - symmetry * azimuth) / divisor.
struct term
{
    const char *name, *meaning, *unit;
    int order, symmetry, divisor;
};

constexpr term terms[] = {
    {"C1", "defocus", "nm", 2, 0, 2},
    {"C3", "spherical aberration, Cs", "mm", 4, 0, 4},
    {"C5", "spherical aberration of 5th order", "mm", 6, 0, 6},
    {"A1", "two-fold astigmatism", "nm", 2, 2, 2},
    {"B2", "axial coma", "nm", 3, 1, 1},
    {"A2", "three-fold astigmatism", "nm", 3, 3, 3},
    {"S3", "star aberration of 3rd order", "um", 4, 2, 1},
    {"A3", "four-fold astigmatism", "um", 4, 4, 4},
    {"B4", "axial coma of 4th order", "um", 5, 1, 1},
    {"D4", "three-lobe aberration", "um", 5, 3, 1},
    {"A4", "five-fold astigmatism", "um", 5, 5, 5},
    {"A5", "six-fold astigmatism", "mm", 6, 6, 6},
    {"R5", "rosette aberration", "mm", 6, 4, 1},
    {"S5", "star aberration of 5th order", "mm", 6, 2, 1},
};

const term& term_of(const coefficient& shown)
{
    const term* found = terms;
    while (std::strcmp(found->name, shown.name) != 0) ++found;
    return *found;
}

/// "C21 = 3 B2 = 1140 nm, phi21 = angle = 110 degrees", as in docs/notation.md.
std::string other_notation(const row_of_page& row)
{
    const term& about = term_of(row.shown);
    const std::string indices = std::to_string(about.order - 1) + std::to_string(about.symmetry);
    const int factor = about.order / about.divisor;
    const std::string times = factor == 1 ? "" : std::to_string(factor) + " ";
    const float modulus = row.values.modulus * static_cast<float>(factor);
    std::string text = "C" + indices + " = " + times + about.name + " = " + full_text_of(modulus) + " " + about.unit;
    if (about.symmetry == 0) return text;
    const std::string divided = about.symmetry == 1 ? "" : " / " + std::to_string(about.symmetry);
    const float azimuth = static_cast<float>(row.values.angle) / static_cast<float>(about.symmetry);
    return text + ", phi" + indices + " = angle" + divided + " = " + text_of(azimuth) + " degrees";
}

std::string sign_rule(const term& about)
{
    if (about.order == 2 && about.symmetry == 0) return "Negative is underfocus.\n";
    if (about.symmetry == 0) return "";
    return "A negative modulus is the same as an angle 180 degrees further.\n";
}

}  // namespace

const char* unit_of(const coefficient& shown) { return term_of(shown).unit; }

std::string value_tip(const row_of_page& row)
{
    const term& about = term_of(row.shown);
    const std::string what = about.symmetry == 0 ? ", in " : ": modulus in ";
    return std::string{about.name} + ", " + about.meaning + what + about.unit + "\n" + sign_rule(about) + "Now " +
           full_text_of(row.values.modulus) + " " + about.unit + "\n" + "In other notation " + other_notation(row);
}

std::string value_arrows_tip(const row_of_page& row)
{
    return std::string{"Change "} + row.shown.name + " by its step, now " + full_text_of(row.values.modulus_step) +
           " " + unit_of(row.shown);
}

std::string step_tip(const row_of_page& row)
{
    return std::string{"Step of the arrows of "} + row.shown.name + ", in " + unit_of(row.shown) + "\nNow " +
           full_text_of(row.values.modulus_step) + " " + unit_of(row.shown);
}

std::string angle_tip(const row_of_page& row)
{
    return std::string{row.shown.name} + ", " + term_of(row.shown).meaning + ": angle, now " +
           std::to_string(row.values.angle) + " degrees\n" +
           "0 is right, counter-clockwise on the displayed image.\n"
           "Drag, type, press an arrow key, or turn the wheel (Shift: 1 degree, Ctrl: 10).\n"
           "In other notation " +
           other_notation(row);
}

std::string angle_arrows_tip(const row_of_page& row)
{
    return std::string{"Turn "} + row.shown.name + " by " + std::to_string(row.values.angle_step) +
           " degrees, with Shift by 1";
}

}  // namespace qorv::panel
