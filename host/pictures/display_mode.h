#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

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
const char* word_for(display_mode mode);

/// The displayed values of row y of the first plane. A real image counts as complex with imaginary part 0. The modulus
/// is rounded once. Phase and logarithm of single-precision pixels are computed in single precision: the phase to
/// 5e-7 rad, the logarithm to 2e-7 or 2e-7 of its magnitude, whichever is more.
/// values  receives as many as the image is wide
/// Throws  script_error for elements that are not numbers
void displayed_row(const image& pixels, std::uint32_t y, display_mode mode, float* values);

struct pixel_place
{
    std::uint32_t x, y;
};

/// The same for single pixels of the first plane, in any order.
/// values  receives one for each place
void displayed_values(const image& pixels, std::span<const pixel_place> places, display_mode mode, float* values);

}  // namespace zentrix::host
