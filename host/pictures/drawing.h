#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "host/pictures/picture.h"

/// Drawings on pictures: areas, lines and texts with smooth edges.
namespace zentrix::host {

/// From the top left corner of the picture, right and down [pixels]; the first pixel extends from 0 to 1.
struct point
{
    double x, y;
};

struct box
{
    double left, top, right, bottom;
};

enum class alignment
{
    left,
    centre,
    right
};

constexpr rgb black_ink{0, 0, 0}, white_paper{255, 255, 255}, grey_ink{110, 110, 110};

/// A picture with an opacity for each pixel. What is outside of it is not drawn.
class drawing
{
  public:
    /// A transparent one. Throws  std::bad_alloc
    drawing(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }

    void fill(const box& area, rgb ink, double opacity = 1);
    /// A line through all points. width: of the line [pixels]
    void line(std::span<const point> through, double width, rgb ink, double opacity = 1);
    void frame(const box& area, double width, rgb ink);
    /// One line of UTF-8. at: the start, middle or end of its base line. size: see text_width
    void text(point at, double size, alignment aligned, std::string_view utf8, rgb ink);
    /// The same from the bottom to the top. at: the middle of its base line
    void rising_text(point at, double size, std::string_view utf8, rgb ink);
    /// One pixel, drawn with that opacity, 0 to 1.
    void set(int x, int y, rgb ink, double opacity);
    void paste(const picture& from, int left, int top);

    /// Surrounds all that is drawn so far with `ink`, for contrast with a picture below. width: [pixels]
    void surround(double width, rgb ink, double opacity);

    /// Calls `use(x, y, ink, opacity)` for all pixels that are not transparent.
    template <class F>
    void for_each_ink(F&& use) const
    {
        const shade* drawn = shades_.data();
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x, ++drawn)
                if (drawn->opacity > 0)
                    use(x, y, rgb{level(drawn->red), level(drawn->green), level(drawn->blue)}, drawn->opacity);
    }

    /// Draws row y on a row of red, green and blue; its first pixel is at `row`.
    void paint_over(int y, std::uint8_t* row) const;

  private:
    struct shade
    {
        float red = 0, green = 0, blue = 0, opacity = 0;  ///< 0 to 255; opacity 0 to 1
    };

    static std::uint8_t level(float part) { return static_cast<std::uint8_t>(part + 0.5F); }
    shade& at(int x, int y)
    {
        return shades_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
    }

    int width_, height_;
    std::vector<shade> shades_;
};

/// All of an opaque drawing.
picture picture_of(const drawing& drawn);

}  // namespace zentrix::host
