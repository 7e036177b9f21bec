#pragma once

#include <array>
#include <cstdint>
#include <span>

/// The tags that the panel, its pages and the handler script share: keys, types, and who touches them when. The script
/// owns the tag group; the panel stores what a user edits and never creates or deletes a tag on purpose.
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

enum class tag_type
{
    float32,
    long32
};
enum class tag_read
{
    page_load,
    page_load_and_knob,
    panel_load
};
enum class tag_written
{
    never,
    value_edit,
    step_edit,
    knob_change,
    display_pick
};

/// One coefficient: a modulus and an angle, each with a step. Round coefficients have no angle (null keys). Moduli in
/// the page's unit as typed, angles and their steps in degrees.
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

/// The Long that switches a page's controls on (non-zero) or greys them (zero), by page.
inline constexpr const char* page_enable_keys[page_count] = {
    "RotationPaneIsEnabled", "BasicPaneIsEnabled", "ThirdPaneIsEnabled", "FourthPaneIsEnabled", "FifthPaneIsEnabled"};

/// The panel's own keys, all Long.
inline constexpr char apply_enable_key[] = "ApplyIsEnabled";  ///< enables the row of controls below the sheet
inline constexpr char has_pctf_key[] = "hasPCTF";             ///< state of the PCTF button
inline constexpr char display_mode_key[] = "DisplayMode";     ///< 1 Real .. 5 Phase

/// One line of the record.
struct tag_rule
{
    const char* key;
    tag_type type;
    int page;  ///< a page_id, or -1 for the panel
    tag_read read;
    tag_written written;
};

inline constexpr std::size_t tag_count = 3 * 2 + 11 * 4 + page_count + 3;

/// Every key once, page by page in the order in which a load reads them, the panel's keys last.
const std::array<tag_rule, tag_count>& tag_record();

}  // namespace qorv::panel
