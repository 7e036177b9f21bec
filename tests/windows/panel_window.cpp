#include "windows/panel_window.h"

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

void pump()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

std::string control::text() const
{
    char text[256] = {};
    GetWindowTextA(window, text, sizeof text);
    return text;
}

std::string control::class_name() const
{
    char name[64] = {};
    GetClassNameA(window, name, sizeof name);
    return name;
}

RECT control::client() const
{
    RECT area;
    GetClientRect(window, &area);
    return area;
}

RECT control::place() const
{
    RECT area;
    GetWindowRect(window, &area);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

void control::type(const std::string& text) const
{
    SetWindowTextA(window, text.c_str());
    pump();
}

void control::click_spin(int direction) const
{
    const RECT area = client();
    const int y = direction > 0 ? area.bottom / 4 : area.bottom * 3 / 4;
    mouse(WM_LBUTTONDOWN, area.right / 2, y);
    mouse(WM_LBUTTONUP, area.right / 2, y);
    pump();
}

void control::key(WPARAM key) const
{
    send(WM_KEYDOWN, key, 1);
    send(WM_KEYUP, key, 1);
    pump();
}

panel_window::panel_window() : frame{the_frame()}
{
    for (const auto& rule : qorv::panel::tag_record()) {
        const std::string key = rule.key;
        if (rule.type == qorv::panel::tag_type::float32) {
            link.floats[key] = key.ends_with("Accel") ? 1.0f : 0.0f;
        } else {
            link.longs[key] = key.ends_with("IsEnabled") || key.ends_with("Accel") || key == "DisplayMode";
        }
    }
    panel = qorv::panel::create_floating_panel(frame, link);
}

panel_window::~panel_window()
{
    qorv::panel::destroy_floating_panel(panel);
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
    return link.take_events();
}

std::vector<COLORREF> pixels_of(HWND window, int width, int height)
{
    std::vector<COLORREF> pixels(static_cast<std::size_t>(width) * height);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const HDC from = GetDC(window), memory = CreateCompatibleDC(from);
    const HBITMAP bitmap = CreateCompatibleBitmap(from, width, height);
    const HGDIOBJ former = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, from, 0, 0, SRCCOPY);
    SelectObject(memory, former);
    GetDIBits(from, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, from);
    for (COLORREF& p : pixels) p = RGB((p >> 16) & 0xff, (p >> 8) & 0xff, p & 0xff);
    return pixels;
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
