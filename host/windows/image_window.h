#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "host/pictures/picture.h"
#include "host/windows/canvas.h"
#include "host/windows/status_line.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// Shows an image, zoomed to fit the window, in one of the five display modes, grey between sampled_limits. The image
/// is requested when the window is painted, and only if it has changed: changes that come faster than painting cost
/// nothing.
/// What the status line of an image_window says of the image.
struct image_facts
{
    double pixel_nm = 0;         ///< 0: unknown
    std::size_t not_finite = 0;  ///< pixels that were replaced because they are not finite
};

class image_window : public window
{
  public:
    /// title   first part of the window's title; the mode follows
    /// owner   null or the window in front of which this one stays
    /// client  size of the client area [pixels]
    /// source  returns the image, of the same size each time; an exception is reported by window::on_failure and the
    ///         previous picture stays; before the first picture the window shows the background
    image_window(std::string title, HWND owner, SIZE client, std::function<image_ref()> source);

    /// To be called when the image has changed.
    void refresh();
    void set_mode(display_mode mode);
    /// The palette for phases. All other modes are grey.
    void set_phase_palette(palette shades);
    palette phase_palette() const noexcept { return phase_palette_; }
    /// Shows real values as grey between fixed limits. The title then has no mode.
    void set_limits(grey_limits limits);

    /// Adds a line below the picture: value and position of the pixel under the mouse, the facts and the zoom.
    void add_status_line(const image_facts& facts);
    /// To be called when the pixel size has changed.
    void set_pixel_nm(double pixel_nm) { facts_.pixel_nm = pixel_nm; }
    int status_height() const { return status_ ? status_->height() : 0; }
    /// Shows a message in the status line until the next one; an empty text ends it.
    void say(const std::string& text);

    /// The present picture; requests the image if it has changed.
    const picture& shown();

    /// Sets the listener for the close button, which does nothing else.
    void on_close(std::function<void()> listener) { close_ = std::move(listener); }
    /// Sets the listener for menu commands.
    void on_command(std::function<void(unsigned id)> listener) { command_ = std::move(listener); }

    /// Time spent on drawing so far, without the time for requesting the image.
    struct costs
    {
        int drawn = 0;
        std::chrono::duration<double> mapping{}, painting{};  ///< pixels to shades; shades to the screen
    };
    const costs& spent() const noexcept { return spent_; }

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void show_title();
    void paint();
    void draw(HDC to);
    RECT picture_area() const;
    void mouse_moved(POINT at);
    void show_facts();

    std::string title_;
    std::function<image_ref()> source_;
    display_mode mode_ = display_mode::modulus;
    palette phase_palette_ = palette::grey;
    std::optional<grey_limits> limits_;
    bool stale_ = true;
    image_ref image_;  ///< of picture_; null before the first one
    picture picture_;  ///< no pixels before the first one
    canvas zoomed_;    ///< picture_ as large as the window shows it
    bool zoom_is_stale_ = true;
    RECT place_{};  ///< of it in the client area; empty before it is first drawn
    image_facts facts_;
    std::optional<status_line> status_;
    bool tracks_mouse_ = false;
    std::function<void()> close_;
    std::function<void(unsigned)> command_;
    costs spent_;
};

/// The largest size with the picture's aspect ratio that fits into `area`, at least one pixel. Small pictures are
/// enlarged.
SIZE zoomed_to_fit(SIZE picture, SIZE area);

}  // namespace zentrix::host
