#pragma once

#include <optional>

#include "host/pictures/display_mode.h"
#include "host/pictures/drawing.h"

/// Which part of an image a window shows, and how large.
namespace zentrix::host {

struct extent
{
    int width = 0, height = 0;
};

/// Whole pixels, right and bottom exclusive.
struct pixel_box
{
    int left = 0, top = 0, right = 0, bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool empty() const { return right <= left || bottom <= top; }
    bool contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

/// The largest size with the image's aspect ratio that fits into `area`, at least one pixel. Small images are enlarged.
extent fitted(extent image, extent area);

/// The mapping between an image and the area of the screen that shows it, both from their upper left corners [pixels].
/// The image's corner is at a whole pixel of the screen. An image that is smaller than the area is in its middle; a
/// larger one covers it. At first the whole image fits into the area.
class view_map
{
  public:
    /// Sets the sizes, at least one pixel each. Keeps the image fitted, or the zoom and the point in the middle.
    void resize(extent image, extent area);

    /// Fits the image into the area, now and whenever the area has another size.
    void fit();
    bool is_fitted() const noexcept { return fitted_; }
    /// zoom   screen pixels along a pixel of the image, limited to what is at least as large as the fitted image or
    ///        1 : 1, and at most 64 : 1 or the fitted image
    /// fixed  the point of the area whose part of the image stays there
    void set_zoom(double zoom, point fixed);
    /// Enlarges by that many steps of a factor of sqrt(2), or reduces. The steps are powers of it, so that 1 : 1
    /// is one of them.
    void step(int steps, point fixed);
    /// Moves the image on the screen.
    void pan(int right, int down);

    /// In the fitted view, that of the axis along which the image fills the area.
    double zoom() const noexcept { return zoom_; }
    /// The whole image in the area, partly outside of it if it is larger.
    const pixel_box& whole() const noexcept { return whole_; }
    /// The part of the area with image.
    pixel_box visible() const;
    point middle_of_area() const { return {area_.width / 2.0, area_.height / 2.0}; }

    point on_screen(point in_image) const;
    point in_image(point on_screen) const;
    /// The pixel of the image at a pixel of the screen; nothing outside.
    std::optional<pixel_place> pixel_at(int x, int y) const;

  private:
    void place(double left, double top);

    extent image_{1, 1}, area_{1, 1};
    bool fitted_ = true;
    double zoom_ = 1;
    pixel_box whole_{0, 0, 1, 1};
};

}  // namespace zentrix::host
