#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/image.h"

/// Pictures to look at: 8 bits a channel, row 0 on top.
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

/// How values become shades. `cyclic` is for phases: colours that come round after a full turn, from red at 0 over
/// green at 120 degrees to blue at 240, so that the step from pi to -pi does not show.
enum class palette
{
    grey,
    cyclic
};

/// Reads "real", "imaginary", "modulus", "log" or "phase"; nothing for another word.
std::optional<display_mode> parse_display_mode(const std::string& word);

/// The pixels of the first plane, seen in that mode, row by row. A real image counts as complex with imaginary part 0.
/// Throws  script_error for elements that are no numbers
std::vector<float> displayed_values(const image& pixels, display_mode mode);

/// Black and white of a picture: the 0.1 % and 99.9 % quantiles of the finite values, so that a few wild pixels do not
/// take all the contrast. Equal where they lie closer together than 1e-5 of their size, which is the noise of rounding
/// and no picture; both 0 when no value is finite.
struct grey_limits
{
    float black = 0;
    float white = 0;
};
grey_limits robust_limits(std::vector<float> values);

/// A picture: rows from the top, without gaps, of grey (1 channel) or red, green and blue (3).
struct picture
{
    int width = 0;
    int height = 0;
    int channels = 1;
    std::vector<std::uint8_t> bytes;
};

/// The first plane of an image as a picture, in cyclic colours or in grey between `limits`, else the robust ones. A pixel
/// that is not a number is black.
picture make_picture(const image& pixels, display_mode mode, palette shades,
                     std::optional<grey_limits> limits = std::nullopt);

/// Writes a picture as .png. Throws  file_error
void write_png(const std::filesystem::path& file, const picture& shown);

/// Writes a picture of an image as .png, grey between robust limits or in cyclic colours.
/// Throws  file_error, also for an image of three dimensions
void write_png(const std::filesystem::path& file, const image& pixels, display_mode mode,
               palette shades = palette::grey);

}  // namespace zentrix::host
