#include "tests/windows/panel_window.h"

#include "lens/panel_tags.h"

namespace windows_tests {

HWND the_frame()
{
    // One window for all tests: without a window manager each new top-level window costs seconds.
    static const HWND frame = CreateWindowW(L"STATIC", L"Zentrix", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 40, 40, 188,
                                            320, nullptr, nullptr, nullptr, nullptr);
    return frame;
}

HWND sheet_of(HWND panel) { return FindWindowExW(panel, nullptr, L"#32770", nullptr); }

HWND page_of(HWND panel, int index)
{
    SendMessageW(sheet_of(panel), PSM_SETCURSEL, static_cast<WPARAM>(index), 0);
    return reinterpret_cast<HWND>(SendMessageW(sheet_of(panel), PSM_GETCURRENTPAGEHWND, 0, 0));
}

void choose_display(HWND panel, int entry)
{
    const HWND list = GetDlgItem(panel, 5111);
    SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(5111, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
}

panel_window::panel_window() : frame{the_frame()}
{
    for (const auto& [key, whole, start] : zentrix::lens::panel_tags({}, 1)) {
        const double value = key.ends_with("Accel") ? 1 : start;
        whole ? host.set(key, static_cast<int>(value)) : host.set(key, static_cast<float>(value));
    }
    panel = host.open_panel(frame);
}

panel_window::~panel_window()
{
    host.close_panel();
    pump();
}

void panel_window::show_panel(bool show)
{
    ShowWindow(panel, show ? SW_SHOW : SW_HIDE);
    const RECT area = control{panel}.client();
    SetWindowPos(frame, nullptr, 0, 0, area.right, area.bottom, SWP_NOMOVE | SWP_NOZORDER);
    pump();
}

HWND panel_window::active_page() const
{
    return reinterpret_cast<HWND>(SendMessageW(sheet(), PSM_GETCURRENTPAGEHWND, 0, 0));
}

HWND panel_window::go_to_page(int index)
{
    const HWND page = page_of(panel, index);
    pump();
    return page;
}

events panel_window::take_events()
{
    pump();
    return host.take_events();
}

}  // namespace windows_tests
