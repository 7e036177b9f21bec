#pragma once

#include <vector>

#include "host/correction/test_pictures.h"
#include "host/windows/canvas.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// The conventions of the panel in words and in three pictures, which the library computes when the window is made.
class conventions_window : public window
{
  public:
    /// owner  the window in front of which this one stays
    /// Throws  as test_pictures; script_error when the system has no memory for the pictures
    conventions_window(HWND owner, engine& engine);

    /// Sets the listener for the close button, which does nothing else.
    void on_close(std::function<void()> listener) { close_ = std::move(listener); }

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void fit();
    void paint();
    void draw(HDC to);

    struct drawn_picture
    {
        test_picture what;
        canvas zoomed;
    };
    int side_, gap_;  ///< of the pictures and between all [pixels]
    LONG title_height_ = 0, rules_top_ = 0;
    std::vector<drawn_picture> pictures_;
    std::function<void()> close_;
};

}  // namespace zentrix::host
