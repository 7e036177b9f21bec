#pragma once

#include "host/engine/engine.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// The frame of a floating window that the library registered: a small captioned window around the library's own. It
/// opens the library's window when it is first shown and adopts its size.
class floating_frame : public window
{
  public:
    /// title  the title under which the library registered its window
    floating_frame(engine& engine, std::string title, HWND owner);
    /// Destroys the library's window, then its own.
    ~floating_frame() override;

    /// Opens the library's window if necessary and shows it. A new one gets the focus.
    /// Throws  script_error when the library opened none, or when none is registered under the title
    void show();
    /// Hides the library's window, which receives WM_SHOWWINDOW and stays open, and the frame.
    void hide();
    /// Destroys the library's window. `show` opens a new one.
    void close();
    /// The library's window; null while there is none.
    HWND content() const noexcept { return content_; }

    /// Gives the focus to the control that had it last, or to the library's window. Shows the frame if it is hidden.
    void activate();

    /// Offers a message to the dialogs inside, which handle keys such as Tab and the arrows. Returns true if one
    /// handled it; it then needs no dispatch. For the message loop.
    bool handles(MSG& message) const;

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void fit_content();
    void remember_focus();
    void restore_focus();

    engine& engine_;
    std::string title_;
    HWND content_ = nullptr;
    HWND focus_ = nullptr;  ///< the control that had it last
};

}  // namespace zentrix::host
