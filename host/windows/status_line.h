#pragma once

#include <windows.h>

#include <string>

#include "win32/handles.h"

namespace zentrix::host {

/// The line at the bottom of a window: a message or the pixel under the mouse at the left, lasting facts at the right.
class status_line
{
  public:
    /// Throws  script_error when the system creates no window
    explicit status_line(HWND parent);

    HWND handle() const noexcept { return handle_.get(); }
    int height() const;
    /// Moves it to the bottom of the parent, to be called when that has another size.
    void place();

    /// A message. It is shown until the next one and hides what `point` says; an empty text ends it.
    void say(const std::string& text);
    const std::string& said() const noexcept { return message_; }
    void point(const std::string& text);
    /// A fact at the right; an empty text takes no room.
    void note(const std::string& text);
    void zoom(const std::string& text);

  private:
    void show();
    void set_part(int part, const std::string& text);

    win32::unique_window handle_;
    std::string message_, pointed_, note_, zoom_;
};

}  // namespace zentrix::host
