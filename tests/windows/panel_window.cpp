#include "tests/windows/panel_window.h"

#include "panel/rules/tag_record.h"

#include <cstdio>
#include <cstdlib>

namespace windows_tests {

HWND the_frame()
{
    // Without a window manager each new one costs seconds of waiting for an answer from it.
    static const HWND frame = CreateWindowW(L"STATIC", L"Zentrix", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 40, 40, 188,
                                            320, nullptr, nullptr, nullptr, nullptr);
    return frame;
}

panel_window::panel_window() : frame{the_frame()}
{
    for (const auto& rule : qorv::panel::tag_record()) {
        const std::string key = rule.key;
        if (rule.type == qorv::panel::tag_type::float32) {
            host.set(key, key.ends_with("Accel") ? 1.0f : 0.0f);
        } else {
            host.set(key, int{key.ends_with("IsEnabled") || key.ends_with("Accel") || key == "DisplayMode"});
        }
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

HWND panel_window::sheet() const { return FindWindowExW(panel, nullptr, L"#32770", nullptr); }

HWND panel_window::active_page() const
{
    return reinterpret_cast<HWND>(SendMessageW(sheet(), PSM_GETCURRENTPAGEHWND, 0, 0));
}

HWND panel_window::go_to_page(int index)
{
    SendMessageW(sheet(), PSM_SETCURSEL, static_cast<WPARAM>(index), 0);
    pump();
    return active_page();
}

events panel_window::heard()
{
    pump();
    return host.take_events();
}

void panel_window::screenshot(const std::string& name) const
{
    const char* const folder = std::getenv("ZENTRIX_SCREENSHOTS");
    if (!folder) return;
    pump();
    const RECT area = control{frame}.client();
    const auto pixels = pixels_of(nullptr, 40 + area.right, 40 + area.bottom);  // of the screen
    std::FILE* const file = std::fopen((std::string{folder} + "/" + name + ".ppm").c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fprintf(file, "P6 %ld %ld 255\n", area.right, area.bottom);
    for (int y = 40; y < 40 + area.bottom; ++y) {
        for (int x = 40; x < 40 + area.right; ++x) {
            const COLORREF p = pixels[static_cast<std::size_t>(y) * (40 + area.right) + x];
            for (int shift = 0; shift < 24; shift += 8) std::fputc(static_cast<int>(p >> shift) & 0xff, file);
        }
    }
    std::fclose(file);
}

}  // namespace windows_tests
