#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "win32/handles.h"

namespace zentrix::host {

/// A top-level window of this program. The object owns the window.
class window
{
  public:
    virtual ~window();
    window(const window&) = delete;
    window& operator=(const window&) = delete;

    HWND handle() const noexcept { return handle_.get(); }
    bool visible() const noexcept { return IsWindowVisible(handle()); }

    /// Sets the listener for exceptions in window procedures, which must not unwind through the system's frames.
    /// Without one they are printed on standard error.
    static void on_failure(std::function<void(const std::string& text)> listener);
    /// Passes the current exception to that listener. For the catch blocks of window procedures.
    static void report_exception() noexcept;

  protected:
    struct form
    {
        std::string title;
        DWORD style = WS_OVERLAPPEDWINDOW, extended_style = 0;
        HWND owner = nullptr;
        SIZE client{};  ///< pixels
    };
    /// Throws  script_error when the system creates no window
    explicit window(const form& description);

    /// Receives the window's messages after construction.
    virtual LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

    win32::unique_window handle_;
};

}  // namespace zentrix::host
