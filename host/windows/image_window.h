#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <optional>

#include "host/correction/picture_supply.h"
#include "host/pictures/histogram_strip.h"
#include "host/pictures/overlay.h"
#include "host/pictures/view_map.h"
#include "host/windows/canvas.h"
#include "host/windows/status_line.h"
#include "host/windows/tool_tips.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// What an image_window says of its image, apart from the picture.
struct image_facts
{
    double pixel_nm = 0;         ///< of the wave, also for its spectrum; 0: unknown
    std::size_t not_finite = 0;  ///< pixels that were replaced because they are not finite
    bool is_spectrum = false;    ///< then positions are frequencies
};

/// Shows an image, at first zoomed to fit the window, in one of the five display modes, grey between sampled_limits.
/// Pictures are requested at the window's resolution when the image has changed, and at the image's own when it has not
/// changed for a while.
///
/// The user zooms with the wheel at the mouse, with + and -, to 1 : 1 with 1 or Ctrl+0 and to the fitted picture with
/// F; moves the picture with the mouse or the arrow keys; sees the uncorrected image while Space is held; and drags the
/// limits in the histogram, which A or a double click there makes automatic again.
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
    /// The same for images whose pictures are slow: nothing is computed before the user rests.
    void refresh_at_rest();
    void set_mode(display_mode mode);
    /// The palette for phases. All other modes are grey.
    void set_phase_palette(palette shades);
    display_mode mode() const noexcept { return mode_; }
    palette phase_palette() const noexcept { return phase_palette_; }
    /// Shows real values as grey between fixed limits. The title then has no mode.
    void set_limits(grey_limits limits);

    /// The first part of the title.
    void set_title(const std::string& title);
    /// Adds a line below the picture: value and position of the pixel under the mouse, the facts and the zoom. Scale
    /// bar or rings of frequencies are drawn on the picture.
    void add_status_line(const image_facts& facts);
    /// To be called when the pixel size has changed.
    void set_pixel_nm(double pixel_nm);
    /// Adds a strip below the picture with the histogram of its values and the limits of the greys. There is none while
    /// colours are shown.
    void add_histogram();
    /// Adds a strip with a plot instead, `height` letters high. It is painted after each new picture.
    /// paint  returns a picture of that size; letters: see text_width
    void add_plot(double height, std::function<picture(int width, int height, double letters)> paint);
    /// To be called when the plot has changed.
    void refresh_plot();
    /// Of strip and status line together.
    int height_below_picture() const;
    /// Shows a message in the status line until the next one; an empty text ends it.
    void say(const std::string& text);

    /// Handles the commands of the menu View that are about the picture. Returns false for others.
    bool view_command(unsigned id);
    /// The place of the picture in the window.
    const view_map& map() const noexcept { return map_; }

    /// Black and white of the present picture.
    const grey_limits& shown_limits() const noexcept { return rendered_.limits; }
    /// Whether there is a limit of the histogram that the mouse can drag.
    bool limit_at(POINT in_client) const;

    /// Whether the present picture at full resolution is on the screen.
    bool is_refined() const noexcept { return rendered_.is_full && !pending(); }
    /// The present picture at full resolution; waits for it. After a failure that was reported it is the previous one,
    /// which is still on the screen.
    /// Throws  script_error with the reason of a failure that was not reported
    const picture& shown();

    /// Sets the listener for the close button, which does nothing else.
    void on_close(std::function<void()> listener) { close_ = std::move(listener); }
    /// Sets the listener for menu commands other than those of view_command.
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
    enum class dragged
    {
        nothing,
        picture,
        limits
    };

    void show_title();
    bool is_grey() const { return mode_ != display_mode::phase || phase_palette_ == palette::grey; }
    std::optional<grey_limits> wanted_limits() const;
    picture_request request(bool full) const;
    /// Whether the image has changed since the picture on the screen was requested.
    bool pending() const noexcept { return received_ < changed_; }
    void take_picture();
    void show_picture(rendered_picture&& rendered);
    void refine();

    // image_window_painting.cpp
    RECT picture_area() const;
    RECT strip_area() const;
    int strip_height() const;
    double letters() const;
    histogram_strip strip() const;
    void lay_out();
    void view_changed();
    void redraw_picture();
    void redraw_strip();
    void paint();
    void draw(HDC to);
    void draw_picture(HDC to);
    void draw_strip(HDC to);
    void make_overlay();

    // image_window_input.cpp
    bool mouse_input(UINT message, WPARAM wparam, LPARAM lparam);
    void press(POINT at);
    void move_to(POINT at);
    void release();
    void wheel(POINT at, int delta);
    bool key(WPARAM key);
    void choose_limits(std::optional<grey_limits> limits);
    void show_uncorrected(bool uncorrected);
    void point(POINT at);
    bool set_cursor() const;

    std::string title_;
    picture_supply& source_;
    display_mode mode_ = display_mode::modulus;
    palette phase_palette_ = palette::grey;
    std::optional<grey_limits> fixed_limits_;
    std::array<std::optional<grey_limits>, 5> chosen_limits_;  ///< by the user, for each mode
    bool uncorrected_ = false;
    std::optional<grey_limits> limits_for_uncorrected_;  ///< those of the corrected picture, to compare

    bool requested_ = false;                   ///< at least once
    std::uint64_t changed_ = 0;                ///< number of the first request after the last change
    std::uint64_t newest_ = 0, received_ = 0;  ///< numbers of the newest request, and of the newest picture or failure
    rendered_picture rendered_;                ///< no pixels before the first one

    view_map map_;
    canvas visible_;  ///< the visible part of the picture with its overlay
    bool picture_is_stale_ = true, overlay_is_stale_ = true, annotated_ = true;
    overlay overlay_;
    canvas strip_canvas_;
    bool has_strip_ = false, strip_is_stale_ = true;
    double plot_letters_ = 0;  ///< height of the plot
    std::function<picture(int, int, double)> plot_;

    image_facts facts_;
    std::optional<status_line> status_;
    std::optional<tool_tips> tips_;  ///< with the status line

    dragged dragging_ = dragged::nothing;
    POINT from_{};  ///< of the drag; for the picture, where it was at the last message
    std::optional<histogram_strip> dragged_strip_;
    grey_limits dragged_limits_;
    limit_handle handle_dragged_ = limit_handle::none;
    bool tracks_mouse_ = false;
    int wheel_ = 0;  ///< turned by less than a step

    std::function<void()> close_;
    std::function<void(unsigned)> command_;
    costs spent_;
};

/// The largest size with the picture's aspect ratio that fits into `area`, at least one pixel. Small pictures are
/// enlarged.
SIZE zoomed_to_fit(SIZE picture, SIZE area);

}  // namespace zentrix::host
