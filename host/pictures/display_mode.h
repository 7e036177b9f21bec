#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/objects/image.h"

namespace zentrix::host {

/// The real number shown for a pixel; the panel offers the same five.
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

/// The displayed values of row y of the first plane. A real image counts as complex with imaginary part 0.
/// values  receives as many as the image is wide
/// Throws  script_error for elements that are not numbers
void displayed_row(const image& pixels, std::uint32_t y, display_mode mode, float* values);

/// The same for the whole plane, row by row.
std::vector<float> displayed_values(const image& pixels, display_mode mode);

}  // namespace zentrix::host
