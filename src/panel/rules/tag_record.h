#pragma once

#include <cstddef>
#include <iterator>
#include <span>

/// Keys of the tags that the panel, its pages and the handler script share. The script owns the tag group; the panel
/// stores the user's edits and never creates or deletes a tag on purpose. lens/panel_tags.cpp has the same keys:
/// handler and panel are parts of two programs that share no source.
namespace qorv::panel {

/// In the order of the sheet's tabs.
enum class page_id
{
    rotation,
    basic,
    third,
    fourth,
    fifth
};
inline constexpr int page_count = 5;

/// One coefficient: a modulus and an angle, each with a step. Moduli and their steps are Float tags in the page's unit,
/// angles and their steps Long tags in degrees. Round coefficients have no angle (null keys).
struct coefficient
{
    const char* name;
    page_id page;
    const char* modulus;
    const char* modulus_step;
    const char* angle;
    const char* angle_step;

    constexpr bool round() const { return angle == nullptr; }
};

inline constexpr coefficient coefficients[] = {
    {"C1", page_id::rotation, "C1", "C1Accel", nullptr, nullptr},
    {"C3", page_id::rotation, "C3", "C3Accel", nullptr, nullptr},
    {"C5", page_id::rotation, "C5", "C5Accel", nullptr, nullptr},
    {"A1", page_id::basic, "ModA1", "ModA1Accel", "AngA1", "AngA1Accel"},
    {"B2", page_id::basic, "ModB2", "ModB2Accel", "AngB2", "AngB2Accel"},
    {"A2", page_id::basic, "ModA2", "ModA2Accel", "AngA2", "AngA2Accel"},
    {"S3", page_id::third, "ModS3", "ModS3Accel", "AngS3", "AngS3Accel"},
    {"A3", page_id::third, "ModA3", "ModA3Accel", "AngA3", "AngA3Accel"},
    {"B4", page_id::fourth, "ModB4", "ModB4Accel", "AngB4", "AngB4Accel"},
    {"D4", page_id::fourth, "ModD4", "ModD4Accel", "AngD4", "AngD4Accel"},
    {"A4", page_id::fourth, "ModA4", "ModA4Accel", "AngA4", "AngA4Accel"},
    {"A5", page_id::fifth, "ModA5", "ModA5Accel", "AngA5", "AngA5Accel"},
    {"R5", page_id::fifth, "ModR5", "ModR5Accel", "AngR5", "AngR5Accel"},
    {"S5", page_id::fifth, "ModS5", "ModS5Accel", "AngS5", "AngS5Accel"},
};

/// The rows of a page, top first.
constexpr std::span<const coefficient> rows_of(page_id page)
{
    std::size_t first = 0, count = 0;
    while (coefficients[first].page != page) ++first;
    while (first + count < std::size(coefficients) && coefficients[first + count].page == page) ++count;
    return {coefficients + first, count};
}

/// The Long tag that enables (non-zero) or disables (zero) a page's controls, by page.
inline constexpr const char* page_enable_keys[page_count] = {
    "RotationPaneIsEnabled", "BasicPaneIsEnabled", "ThirdPaneIsEnabled", "FourthPaneIsEnabled", "FifthPaneIsEnabled"};

/// The panel's own keys, all Long tags.
inline constexpr char apply_enable_key[] = "ApplyIsEnabled";  ///< enables the controls below the sheet
inline constexpr char has_pctf_key[] = "hasPCTF";             ///< state of the PCTF button
inline constexpr char display_mode_key[] = "DisplayMode";     ///< 1 Real .. 5 Phase

}  // namespace qorv::panel
