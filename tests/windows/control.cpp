#include "tests/windows/control.h"

#include <gtest/gtest.h>

namespace windows_tests {

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
    click(area.right / 2, direction > 0 ? area.bottom / 4 : area.bottom * 3 / 4);
    pump();
}

void control::key(WPARAM key) const
{
    send(WM_KEYDOWN, key, 1);
    send(WM_KEYUP, key, 1);
    pump();
}

void real_mouse(POINT to, DWORD button)
{
    const auto scaled = [](LONG pixel, int size) { return static_cast<LONG>((pixel * 65536LL + 32768) / size); };
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = scaled(to.x, GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = scaled(to.y, GetSystemMetrics(SM_CYSCREEN));
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | button;
    ASSERT_EQ(SendInput(1, &input, sizeof input), 1u);
    for (int i = 0; i < 20; ++i) {
        pump();
        Sleep(5);
    }
}

}  // namespace windows_tests
