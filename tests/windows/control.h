#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

/// Operations of a user on windows.
namespace windows_tests {

/// Handles all posted messages, paint messages included.
void pump();

/// A window with the queries and actions that tests need.
struct control
{
    HWND window;

    LRESULT send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return SendMessageW(window, message, wparam, lparam);
    }
    std::string text() const;
    std::string class_name() const;
    bool enabled() const { return IsWindowEnabled(window); }
    bool visible() const { return IsWindowVisible(window); }
    RECT client() const;
    /// Rectangle in client pixels of the parent.
    RECT place() const;
    /// Replaces the text; the parent receives one EN_CHANGE, as for typing.
    void type(const std::string& text) const;
    /// Clicks the upper (+1) or lower (-1) half of a spin button.
    void click_spin(int direction) const;
    void mouse(UINT message, int x, int y) const { send(message, MK_LBUTTON, MAKELPARAM(x, y)); }
    void click(int x, int y) const
    {
        mouse(WM_LBUTTONDOWN, x, y);
        mouse(WM_LBUTTONUP, x, y);
    }
    void key(WPARAM key) const;
};

/// Moves the system's mouse to a screen point, optionally with a button event (MOUSEEVENTF_...), and handles the
/// messages that follow.
void real_mouse(POINT to, DWORD button = 0);

}  // namespace windows_tests
