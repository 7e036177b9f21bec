#pragma once

#include <windows.h>

#include <commctrl.h>

#include "panel/floating_panel.h"
#include "support/recording_link.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace windows_tests {

using events = std::vector<std::string>;

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

/// The panel in a frame, behind it a recording link whose tags hold every key: pages enabled, values 0, steps 1.
class panel_window : public testing::Test
{
  protected:
    panel_window();
    ~panel_window() override;

    void show_panel(bool show = true);
    HWND sheet() const;
    /// Brings a page (0 Rotation .. 4 "5th") to the front and returns its window.
    HWND go_to_page(int index);
    HWND active_page() const;
    control of_panel(int id) const { return {GetDlgItem(panel, id)}; }
    /// Of the page in front.
    control of_page(int id) const { return {GetDlgItem(active_page(), id)}; }
    /// What link has heard since the last question, once every message has arrived.
    events heard();
    /// Saves what the screen shows of the frame, when the variable ZENTRIX_SCREENSHOTS names a folder.
    void screenshot(const std::string& name) const;

    support::recording_link link;
    const HWND frame;
    HWND panel = nullptr;
};

/// A visible window, the same for all tests.
HWND the_frame();

/// The pixels of a window's client area as the screen shows them, rows from the top, 0x00bbggrr.
std::vector<COLORREF> pixels_of(HWND window, int width, int height);

}  // namespace windows_tests
