#pragma once

#include "tests/windows/control.h"
#include "tests/windows/panel_host.h"

#include <gtest/gtest.h>

#include <string>

namespace windows_tests {

HWND sheet_of(HWND panel);
/// Makes a page (0 Rotation .. 4 "5th") the active one and returns its window.
HWND page_of(HWND panel, int index);
/// Selects an entry of the display list as a user does.
void choose_display(HWND panel, int entry);

/// The panel of the built library in a frame. All tags are set: pages enabled, values 0, steps 1.
class panel_window : public testing::Test
{
  protected:
    panel_window();
    ~panel_window() override;

    void show_panel(bool show = true);
    HWND sheet() const { return sheet_of(panel); }
    HWND go_to_page(int index);
    HWND active_page() const;
    control of_panel(int id) const { return {GetDlgItem(panel, id)}; }
    /// A control of the active page.
    control of_page(int id) const { return {GetDlgItem(active_page(), id)}; }
    /// Handles all waiting messages and returns the host's events since the last call.
    events take_events();

    panel_host host;
    const HWND frame;
    HWND panel = nullptr;
};

/// A visible window, shared by all tests.
HWND the_frame();

}  // namespace windows_tests
