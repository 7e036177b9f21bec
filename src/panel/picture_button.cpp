#include "panel/picture_button.h"

#include <uxtheme.h>
#include <vssym32.h>

#include <cstdint>

#include "panel/memory_dc.h"
#include "panel/rules/overlay.h"
#include "win32/handles.h"

namespace qorv::panel {

namespace {

constexpr std::uint32_t full = 255, faint = 90;

using unique_theme = win32::unique_handle<HTHEME, ::CloseThemeData>;

BITMAPINFO description_of(LONG width, LONG height)
{
    BITMAPINFO description{};
    description.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    return description;
}

/// Draws a picture in greys over what is there.
void draw_overlay(HDC to, POINT place, HBITMAP picture, std::uint32_t strength)
{
    BITMAP size{};
    if (!::GetObject(picture, sizeof size, &size)) return;
    BITMAPINFO description = description_of(size.bmWidth, size.bmHeight);
    void* memory = nullptr;
    const win32::unique_bitmap overlay{::CreateDIBSection(to, &description, DIB_RGB_COLORS, &memory, nullptr, 0)};
    if (!overlay) return;
    auto* const pixels = static_cast<std::uint32_t*>(memory);
    ::GetDIBits(to, picture, 0, static_cast<UINT>(size.bmHeight), pixels, &description, DIB_RGB_COLORS);
    ::GdiFlush();
    for (LONG i = 0; i < size.bmWidth * size.bmHeight; ++i) pixels[i] = overlay_pixel(pixels[i] & 0xff, strength);
    const win32::unique_memory_dc from{::CreateCompatibleDC(to)};
    const win32::selected_object selected{from.get(), overlay.get()};
    ::AlphaBlend(to, place.x, place.y, size.bmWidth, size.bmHeight, from.get(), 0, 0, size.bmWidth, size.bmHeight,
                 {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA});
}

/// Whether the system's button paints during the message, without WM_PAINT.
bool paints_at_once(UINT message)
{
    switch (message) {
        case BM_SETCHECK:
        case BM_SETSTATE:
        case WM_ENABLE:
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
        case WM_SETTEXT: return true;
        default: return false;
    }
}

}  // namespace

BEGIN_MESSAGE_MAP(picture_button, CButton)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

void picture_button::LoadPicture(UINT bitmap)
{
    if (!picture_.GetSafeHandle()) picture_.LoadBitmap(bitmap);
    if (!bitmap_.GetSafeHandle()) bitmap_.LoadMappedBitmap(bitmap);
    SetBitmap(bitmap_);
}

LRESULT picture_button::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (!paints_at_once(message) || !IsWindowVisible()) return CButton::WindowProc(message, wparam, lparam);
    DefWindowProc(WM_SETREDRAW, FALSE, 0);
    const LRESULT result = CButton::WindowProc(message, wparam, lparam);
    DefWindowProc(WM_SETREDRAW, TRUE, 0);
    Invalidate(FALSE);
    return result;
}

void picture_button::OnPaint()
{
    CPaintDC dc{this};
    CMemDC memory{&dc};
    paint(memory);
}

void picture_button::paint(HDC dc)
{
    CRect area;
    GetClientRect(area);
    const auto state = static_cast<DWORD>(SendMessage(BM_GETSTATE));
    const bool down = state & (BST_PUSHED | BST_CHECKED);
    paint_frame(dc, area, down);
    BITMAP size{};
    ::GetObject(picture_.GetSafeHandle(), sizeof size, &size);
    const int shift = down ? 1 : 0;
    draw_overlay(dc, {(area.Width() - size.bmWidth) / 2 + shift, (area.Height() - size.bmHeight) / 2 + shift}, picture_,
                 IsWindowEnabled() ? full : faint);
    if ((state & BST_FOCUS) && !(SendMessage(WM_QUERYUISTATE) & UISF_HIDEFOCUS)) {
        ::InflateRect(area, -3, -3);
        ::DrawFocusRect(dc, area);
    }
}

void picture_button::paint_frame(HDC dc, RECT area, bool down) const
{
    const bool enabled = IsWindowEnabled();
    if (const unique_theme theme{::OpenThemeData(m_hWnd, L"Button")}) {
        const int state = !enabled ? PBS_DISABLED : down ? PBS_PRESSED : PBS_NORMAL;
        ::DrawThemeParentBackground(m_hWnd, dc, &area);
        ::DrawThemeBackground(theme.get(), dc, BP_PUSHBUTTON, state, &area, nullptr);
    } else {
        ::DrawFrameControl(dc, &area, DFC_BUTTON,
                           DFCS_BUTTONPUSH | (down ? DFCS_PUSHED : 0U) | (enabled ? 0U : DFCS_INACTIVE));
    }
}

}  // namespace qorv::panel
