#pragma once

#include <cstdint>
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

/// Paints the first plane of an image, in colours with palette::cyclic, otherwise in grey. Pixels that are not a number
/// are black; in colours infinite ones, too.
class picture_painter
{
  public:
    /// limits  of grey; not used for colours
    /// `pixels` must outlive the painter.
    /// Throws  script_error for elements that are not numbers
    picture_painter(const image& pixels, display_mode mode, palette shades, grey_limits limits);

    int width() const { return static_cast<int>(pixels_.size(0)); }
    int height() const { return static_cast<int>(pixels_.size(1)); }
    int channels() const { return shades_ == palette::cyclic ? 3 : 1; }

    /// Paints row y. May be called on several threads at the same time; does not throw.
    /// values  receives the displayed values, `width` of them
    /// bytes   receives width * channels bytes
    void paint_row(int y, std::span<float> values, std::uint8_t* bytes) const;

  private:
    const image& pixels_;
    display_mode mode_;
    palette shades_;
    grey_scale greys_;
};

/// Replaces `painted` by the whole picture, on all processors. Its memory is used again if the size is the same.
/// Throws  std::bad_alloc
void paint_picture(const picture_painter& painter, picture& painted);

}  // namespace zentrix::host
