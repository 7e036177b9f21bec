#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "host/pictures/picture.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// Shows an image, zoomed to fit the window, in one of the five display modes. The image is asked for when the window
/// is painted, and only if it changed since: changes that follow each other faster than painting cost nothing.
class image_window : public window
{
  public:
    /// `title` is followed by the mode. `source` gives the image; what it throws is told and leaves the former picture.
    image_window(std::string title, HWND owner, SIZE client, std::function<image_ref()> source);

    /// The image has changed.
    void refresh();
    void set_mode(display_mode mode);
    /// What phases are shown in; everything else is grey.
    void set_phase_palette(palette shades);
    palette phase_palette() const noexcept { return phase_palette_; }
    /// Grey between these, whatever the image; and no word about the mode in the title.
    void set_limits(grey_limits limits);

    /// The picture as it is shown, up to date.
    const picture& shown();

    /// The user wants to close the window; nothing happens otherwise.
    void on_close(std::function<void()> told) { close_ = std::move(told); }
    /// A menu's command.
    void on_command(std::function<void(unsigned id)> told) { command_ = std::move(told); }

    /// What drawing has cost so far, without asking for the image.
    struct costs
    {
        int drawn = 0;
        std::chrono::duration<double> mapping{}, painting{};  ///< pixels to shades, shades to the screen
    };
    const costs& spent() const noexcept { return spent_; }

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void show_title();
    void paint();
    void draw(HDC to);

    std::string title_;
    std::function<image_ref()> source_;
    display_mode mode_ = display_mode::modulus;
    palette phase_palette_ = palette::grey;
    std::optional<grey_limits> limits_;
    bool stale_ = true;
    picture picture_;
    std::function<void()> close_;
    std::function<void(unsigned)> command_;
    costs spent_;
};

/// The largest size of this shape that fits into `room`, at least one pixel; larger than the picture if need be.
SIZE zoomed_to_fit(SIZE picture, SIZE room);

}  // namespace zentrix::host
