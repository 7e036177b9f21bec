#pragma once

#include <windows.h>

#include <string>

#include "win32/handles.h"

namespace zentrix::host {

/// The tooltips of a window. Where the system creates none there are just no explanations.
class tool_tips
{
  public:
    /// owner  the window whose parts are explained; it must outlive the object
    explicit tool_tips(HWND owner);

    /// Explains a control of the owner.
    void explain(HWND control, const std::string& text);
    /// Explains an area of the owner [client pixels] instead of the former area; an empty one is not explained.
    void explain_area(const RECT& area, const std::string& text);

  private:
    void add(UINT flags, UINT_PTR id, const RECT& area, const std::string& text);

    HWND owner_;
    win32::unique_window window_;
};

}  // namespace zentrix::host
