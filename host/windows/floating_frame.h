#pragma once

#include <functional>

#include "host/engine/engine.h"
#include "host/windows/window.h"

namespace zentrix::host {

/// The frame of a floating window that the library registered: a small captioned window around the library's own. It
/// opens the library's window when it is first shown and takes its size from it.
class floating_frame : public window
{
  public:
    /// `title` is that of the registered window.
    floating_frame(engine& engine, std::string title, HWND owner);
    /// Destroys the library's window, then its own.
    ~floating_frame() override;

    /// Opens the library's window if need be and shows it.
    /// Throws  script_error when the library made none, or when none is registered under the title
    void show();
    /// The library's window hears that it is hidden; it stays open.
    void hide();
    /// Destroys the library's window; `show` makes a new one.
    void close();
    /// The library's window; null while there is none.
    HWND content() const noexcept { return content_; }

    /// The user hid the frame by its own button.
    void on_hidden(std::function<void()> told) { hidden_ = std::move(told); }

    /// Gives keyboard messages to the dialogs inside, such as Tab and the arrows; true when one took the message, which
    /// then needs no dispatch. For the message loop.
    bool takes(MSG& message) const;

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void fit_content();

    engine& engine_;
    std::string title_;
    HWND content_ = nullptr;
    std::function<void()> hidden_;
};

}  // namespace zentrix::host
