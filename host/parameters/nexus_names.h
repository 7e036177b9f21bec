#pragma once

#include <string>

#include "host/parameters/other_notation.h"

/// The names that NeXus has for coefficients in its base class NXaberration_model.
namespace zentrix::host {

/// Whether a name has the form c_1_0, c_1_2_a or a_1.
bool is_nexus_name(const std::string& name);

/// "c_1_2_a" for "C12a".
std::string nexus_name_of(const std::string& cartesian);

/// See coefficients_in. "defocus" is refused: programs disagree on its sign.
coefficient_map nexus_coefficients_in(const named_entries& entries, const file_frame& frame);

}  // namespace zentrix::host
