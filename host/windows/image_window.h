#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "host/correction/picture_supply.h"
#include "host/windows/canvas.h"
#include "host/windows/status_line.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// What the status line of an image_window says of the image.
struct image_facts
{
    double pixel_nm = 0;         ///< 0: unknown
    std::size_t not_finite = 0;  ///< pixels that were replaced because they are not finite
};

/// Shows an image, zoomed to fit the window, in one of the five display modes, grey between sampled_limits. Pictures
/// are requested at the window's resolution when the image has changed, and at the image's own when it has not changed
/// for a while.
class image_window : public window
{
  public:
    /// title   first part of the window's title; the mode follows
    /// owner   null or the window in front of which this one stays
    /// client  size of the client area [pixels]
    /// source  must outlive the window. A failure is reported by window::on_failure and the previous picture stays;
    ///         before the first picture the window shows the background
    image_window(std::string title, HWND owner, SIZE client, picture_supply& source);
    ~image_window() override;

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

    /// The present picture at full resolution; waits for it. The last one if it cannot be made.
    /// Throws  script_error with the reason, once
    const picture& shown();

    /// Sets the listener for the close button, which does nothing else.
    void on_close(std::function<void()> listener) { close_ = std::move(listener); }
    /// Sets the listener for menu commands.
    void on_command(std::function<void(unsigned id)> listener) { command_ = std::move(listener); }

    /// Work done so far.
    struct costs
    {
        int drawn = 0;
        std::chrono::duration<double> painting{};  ///< shades to the screen
    };
    const costs& spent() const noexcept { return spent_; }

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void show_title();
    picture_request request(bool full) const;
    void take_picture();
    void show_picture(rendered_picture&& rendered);
    void refine();
    void paint();
    void draw(HDC to);
    RECT picture_area() const;
    void mouse_moved(POINT at);
    void show_facts();

    std::string title_;
    picture_supply& source_;
    display_mode mode_ = display_mode::modulus;
    palette phase_palette_ = palette::grey;
    std::optional<grey_limits> limits_;
    bool requested_ = false;     ///< at least once
    bool pending_ = false;       ///< a change whose picture is not there yet
    rendered_picture rendered_;  ///< no pixels before the first one
    canvas zoomed_;              ///< its shades as large as the window shows them
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
