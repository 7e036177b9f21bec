#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "lens/notation.h"

/// Coefficients in other notations, as entries of files. docs/notation.md compares the notations.
namespace zentrix::host {

enum class other_notation
{
    polar,
    cartesian,
    corrector,
    /// c_1_0, c_1_2_a, ... (cartesian), c_1_2 with an angle (polar), or c_1, a_1, ... (corrector): the names of NeXus.
    /// Each is an object with magnitude and units, and with angle and angle_units for names that are not cartesian.
    /// Source  NeXus definitions, base classes NXaberration and NXaberration_model
    nexus
};

/// "polar", "cartesian", "corrector" or "nexus"; nothing for other texts.
std::optional<other_notation> notation_named(const std::string& name);
const char* name_of(other_notation notation);

/// The notation that a coefficient of this name belongs to. Nothing for other names, and for those that two notations
/// have in common (C1, A1, ...); C10, C30 and C50 are polar and cartesian, and count as polar.
std::optional<other_notation> notation_of_name(const std::string& name);

/// The object "frame" of a file. A unit that is not given is empty.
struct file_frame
{
    std::string length, angle;
    bool clockwise = false;
    double zero_degrees = 0;
};

/// Throws  std::invalid_argument naming the member that is not understood
file_frame frame_in(const nlohmann::ordered_json& object);
nlohmann::ordered_json as_json(const file_frame& frame);
/// With nm and degrees for units that are not given.
lens::notation_frame notation_frame_of(const file_frame& frame);

using named_entries = std::vector<std::pair<std::string, const nlohmann::ordered_json*>>;
using coefficient_map = std::map<lens::coefficient, lens::polar>;

/// The coefficients that are not zero. A number is in the units of the frame; {"value": 140, "unit": "A"} has its own.
/// Throws  std::invalid_argument naming the entry that is not understood or has no unit
coefficient_map coefficients_in(const named_entries& entries, other_notation notation, const file_frame& frame);

/// The given coefficients as entries that coefficients_in reads: numbers with units. In `nexus` they are cartesian.
nlohmann::ordered_json entries_of(const coefficient_map& coefficients, other_notation notation,
                                  const file_frame& frame);

}  // namespace zentrix::host
