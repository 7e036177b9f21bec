#pragma once

#include "contract/prototype.h"

#include <string_view>

namespace zentrix::host {

using contract::name_of;
using contract::prototype;
using contract::prototype_parameter;
using contract::prototype_type;

/// Reads a prototype text, see contract::parse_prototype.
/// Throws  script_error naming the text and what is wrong with it
prototype parse_prototype(std::string_view text);

}  // namespace zentrix::host
