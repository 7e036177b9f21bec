#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/objects/image.h"

namespace zentrix::host {

/// What is shown of a pixel; the panel offers the same five.
enum class display_mode
{
    real,
    imaginary,
    modulus,
    log_modulus,
    phase
};

/// Reads "real", "imaginary", "modulus", "log" or "phase"; nothing for another word.
std::optional<display_mode> parse_display_mode(const std::string& word);

/// The pixels of the first plane, seen in that mode, row by row. A real image counts as complex with imaginary part 0.
/// Throws  script_error for elements that are no numbers
std::vector<float> displayed_values(const image& pixels, display_mode mode);

}  // namespace zentrix::host
