#pragma once

#include <atomic>
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

/// How grey pictures show pixels that are not a number. Pictures in colours always show them as missing_in_colours.
enum class missing_pixels
{
    black,  ///< in one channel
    marked  ///< as missing_in_grey, in three channels
};

/// Paints the first plane of an image.
class picture_painter
{
  public:
    /// limits  of grey; with palette::wave, `white` is the modulus of the full colours. Not used by palette::cyclic
    /// `pixels` must outlive the painter.
    /// Throws  script_error for elements that are not numbers
    picture_painter(const image& pixels, display_mode mode, palette shades, grey_limits limits,
                    missing_pixels missing = missing_pixels::black);

    int width() const { return static_cast<int>(pixels_.size(0)); }
    int height() const { return static_cast<int>(pixels_.size(1)); }
    int channels() const { return shades_ == palette::grey && missing_ == missing_pixels::black ? 1 : 3; }

    /// The displayed values of a row that paint_row needs: `width`; with palette::wave as many moduli, too.
    std::size_t values_per_row() const { return pixels_.size(0) * (shades_ == palette::wave ? 2 : 1); }

    /// Paints row y. May be called on several threads at the same time; does not throw.
    /// values  receives values_per_row() values
    /// bytes   receives width * channels bytes
    void paint_row(int y, std::span<float> values, std::uint8_t* bytes) const;

  private:
    const image& pixels_;
    display_mode mode_;
    palette shades_;
    missing_pixels missing_;
    grey_scale greys_;
    std::optional<wave_colours> wave_;
};

/// Replaces `painted` by the whole picture, on all processors. Its memory is used again if the size is the same.
/// given_up  makes this return soon when it becomes true; the picture is then incomplete. Null: never
/// Throws    std::bad_alloc
void paint_picture(const picture_painter& painter, picture& painted, const std::atomic<bool>* given_up = nullptr);

}  // namespace zentrix::host
