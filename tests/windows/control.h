#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

/// Windows as a user sees and handles them.
namespace windows_tests {

/// Lets every posted message arrive, paint messages included.
void pump();

/// A control: its window, found by id.
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
    /// In client pixels of its parent.
    RECT place() const;
    /// Replaces the text as typing does: the parent hears of one change.
    void type(const std::string& text) const;
    /// A click on the upper (+1) or lower (-1) half of a spin button.
    void click_spin(int direction) const;
    void mouse(UINT message, int x, int y) const { send(message, MK_LBUTTON, MAKELPARAM(x, y)); }
    void key(WPARAM key) const;
};

/// The mouse of the machine: goes to a point of the screen, with a button pressed or let go (MOUSEEVENTF_...) or not, and
/// lets everything happen that follows.
void real_mouse(POINT to, DWORD button = 0);

/// The pixels of a window's client area as the screen shows them, rows from the top, 0x00bbggrr.
std::vector<COLORREF> pixels_of(HWND window, int width, int height);

}  // namespace windows_tests
