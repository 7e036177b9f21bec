#pragma once

#include "tests/windows/control.h"
#include "tests/windows/panel_host.h"

#include <gtest/gtest.h>

#include <string>

namespace windows_tests {

/// The panel of the built library in a frame, with tags for every key: pages enabled, values 0, steps 1.
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
    /// What the host has heard since the last question, once every message has arrived.
    events heard();
    /// Saves what the screen shows of the frame, when the variable ZENTRIX_SCREENSHOTS names a folder.
    void screenshot(const std::string& name) const;

    panel_host host;
    const HWND frame;
    HWND panel = nullptr;
};

/// A visible window, the same for all tests.
HWND the_frame();

}  // namespace windows_tests
