#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "host/pictures/display_mode.h"
#include "host/pictures/shades.h"

/// Pictures for the eye: 8 bits per channel, row 0 on top.
namespace zentrix::host {

/// A picture: rows from the top, without gaps, of grey (1 channel) or red, green and blue (3).
struct picture
{
    int width = 0;
    int height = 0;
    int channels = 1;
    std::vector<std::uint8_t> bytes;
};

/// Paints the first plane of an image row by row, with memory for one row: in colours with palette::cyclic, otherwise
/// in grey between robust_limits. Pixels that are not a number are black; in colours infinite ones, too.
class picture_painter
{
  public:
    /// Reads the image twice for the limits of grey. `pixels` must outlive the painter.
    /// Throws  script_error for elements that are not numbers
    picture_painter(const image& pixels, display_mode mode, palette shades);

    int width() const { return static_cast<int>(pixels_.size(0)); }
    int height() const { return static_cast<int>(pixels_.size(1)); }
    int channels() const { return shades_ == palette::cyclic ? 3 : 1; }
    /// Row y, width * channels bytes; valid until the next call.
    std::span<const std::uint8_t> row(int y);

  private:
    const image& pixels_;
    display_mode mode_;
    palette shades_;
    std::vector<float> values_;
    std::vector<std::uint8_t> row_;
    grey_limits limits_;
};

/// The same picture as a whole; grey between `limits` if given. Computes each displayed value once.
picture make_picture(const image& pixels, display_mode mode, palette shades,
                     std::optional<grey_limits> limits = std::nullopt);

}  // namespace zentrix::host
