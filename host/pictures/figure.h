#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/pictures/drawing.h"
#include "host/pictures/grey_limits.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

enum class limits_rule
{
    automatic,  ///< automatic_limits; with palette::wave from 0 to the upper quantile without the edges
    full,       ///< the extremes; with palette::wave from 0 to the largest
    given
};

/// How a picture shows an image.
struct figure_style
{
    display_mode shown = display_mode::modulus;
    palette shades = palette::grey;
    limits_rule rule = limits_rule::automatic;
    grey_limits limits;  ///< for limits_rule::given
    bool scale_bar = false;
    bool colour_bar = false;  ///< or the wheel of the colours
    std::string title;
    std::string quantity;  ///< name and unit of the values, for the colour bar; empty: that of `shown`
    int enlargement = 0;  ///< pixels of the picture along one of the image; 0: 1, and more for small annotated pictures
};

/// Checks what can be known of a picture before the values are: the image's size and scale.
/// Throws  script_error for an image of three dimensions, for a scale bar without a scale, and when a side would have
///         more than 65535 pixels after it is enlarged
void require_drawable(const image& pixels, const figure_style& style);

/// What a picture shows.
struct shown_range
{
    display_mode shown = display_mode::modulus;
    palette shades = palette::grey;
    grey_limits limits;            ///< of the greys; of the modulus with palette::wave; not used by palette::cyclic
    std::size_t not_a_number = 0;  ///< pixels
    std::string quantity;          ///< "phase (rad)"
};

/// The picture of an image with a scale bar, a colour bar and a title if these are wanted. Scale bar and its length
/// are in the lower left corner of the image, all else is in margins. Letters are a 38th of the image's height.
class figure
{
  public:
    /// Surveys the values and draws the annotations. `pixels` must outlive the figure.
    /// Throws  script_error as require_drawable, and for elements that are not numbers
    figure(const image& pixels, const figure_style& style);

    int width() const { return width_; }
    int height() const { return height_; }
    int channels() const { return channels_; }
    const shown_range& range() const { return range_; }

    /// Paints the next row, the top one first, as width * channels bytes. Call it once for each row.
    void paint_next_row(std::uint8_t* bytes);

  private:
    struct layer
    {
        int left, top;
        drawing drawn;
    };

    void choose_limits(const image& pixels, const figure_style& style);
    void add_margins(const figure_style& style);
    void add_scale_bar(const image& pixels);

    shown_range range_;
    int enlargement_ = 1;
    double letters_ = 0;      ///< size
    int left_ = 0, top_ = 0;  ///< of the image in the picture
    int width_ = 0, height_ = 0, channels_ = 1;
    std::optional<picture_painter> painter_;
    std::vector<float> values_;
    std::vector<std::uint8_t> image_row_;  ///< of the image, not enlarged
    std::vector<layer> layers_;
    int next_row_ = 0;
};

}  // namespace zentrix::host
