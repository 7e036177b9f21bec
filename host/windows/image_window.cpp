#include "host/windows/image_window.h"
#include "host/text/encoding.h"

#include <algorithm>

namespace zentrix::host {

namespace {

constexpr const char* mode_names[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};

/// A picture in the format of a device-independent bitmap: rows padded to four bytes, blue first.
struct device_bitmap
{
    struct
    {
        BITMAPINFOHEADER header;
        RGBQUAD greys[256];
    } info{};
    std::vector<std::uint8_t> bytes;

    explicit device_bitmap(const picture& from)
    {
        info.header = {sizeof info.header,
                       from.width,
                       -from.height,
                       1,
                       static_cast<WORD>(8 * from.channels),
                       BI_RGB,
                       0,
                       0,
                       0,
                       from.channels == 1 ? 256U : 0U,
                       0};
        for (unsigned i = 0; i < 256; ++i) {
            const auto grey = static_cast<BYTE>(i);
            info.greys[i] = {grey, grey, grey, 0};
        }
        const auto row = static_cast<std::size_t>(from.width) * static_cast<std::size_t>(from.channels);
        const std::size_t stride = (row + 3) / 4 * 4;
        bytes.resize(stride * static_cast<std::size_t>(from.height));
        for (std::size_t y = 0; y < static_cast<std::size_t>(from.height); ++y) {
            const auto to = bytes.begin() + static_cast<std::ptrdiff_t>(y * stride);
            std::copy_n(from.bytes.begin() + static_cast<std::ptrdiff_t>(y * row), row, to);
            if (from.channels == 3)
                for (std::size_t x = 0; x < row; x += 3) std::swap(bytes[y * stride + x], bytes[y * stride + x + 2]);
        }
    }
};

template <class F>
auto timed(std::chrono::duration<double>& spent, F work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    spent += std::chrono::steady_clock::now() - start;
}

}  // namespace

SIZE zoomed_to_fit(SIZE picture, SIZE area)
{
    const double zoom = std::min(static_cast<double>(area.cx) / picture.cx, static_cast<double>(area.cy) / picture.cy);
    return {std::max(1L, static_cast<LONG>(picture.cx * zoom + 0.5)),
            std::max(1L, static_cast<LONG>(picture.cy * zoom + 0.5))};
}

image_window::image_window(std::string title, HWND owner, SIZE client, std::function<image_ref()> source)
    : window{{title, WS_OVERLAPPEDWINDOW, 0, owner, client}}, title_{std::move(title)}, source_{std::move(source)}
{
    show_title();
}

void image_window::show_title()
{
    const std::string mode = limits_ ? "" : std::string{" - "} + mode_names[static_cast<std::size_t>(mode_)];
    SetWindowTextW(handle(), widen(title_ + mode).c_str());
}

void image_window::refresh()
{
    stale_ = true;
    InvalidateRect(handle(), nullptr, FALSE);
}

void image_window::set_mode(display_mode mode)
{
    mode_ = mode;
    show_title();
    refresh();
}

void image_window::set_phase_palette(palette shades)
{
    phase_palette_ = shades;
    refresh();
}

void image_window::set_limits(grey_limits limits)
{
    limits_ = limits;
    mode_ = display_mode::real;
    show_title();
    refresh();
}

const picture& image_window::shown()
{
    if (!stale_) return picture_;
    stale_ = false;  // before the request, so that a failure is not repeated at once
    const auto image = source_();
    const auto shades = mode_ == display_mode::phase ? phase_palette_ : palette::grey;
    timed(spent_.mapping, [&] { picture_ = make_picture(*image, mode_, shades, limits_); });
    return picture_;
}

LRESULT image_window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_PAINT: return paint(), 0;
        case WM_ERASEBKGND: return 1;  // painting covers the whole area
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        case WM_COMMAND: return command_ ? command_(LOWORD(wparam)) : void(), 0;
        default: return window::handle_message(message, wparam, lparam);
    }
}

void image_window::paint()
{
    // BeginPaint comes first, because it validates the window: otherwise a failure would cause WM_PAINT without end.
    struct painting
    {
        HWND window;
        PAINTSTRUCT state;
        ~painting() { EndPaint(window, &state); }
    } now{handle(), {}};
    const HDC to = BeginPaint(handle(), &now.state);
    shown();
    timed(spent_.painting, [&] { draw(to); });
    ++spent_.drawn;
}

void image_window::draw(HDC to)
{
    RECT client;
    GetClientRect(handle(), &client);
    const SIZE size = zoomed_to_fit({picture_.width, picture_.height}, {client.right, client.bottom});
    const RECT place{(client.right - size.cx) / 2, (client.bottom - size.cy) / 2, (client.right + size.cx) / 2,
                     (client.bottom + size.cy) / 2};
    const device_bitmap bitmap{picture_};
    // Pixels are averaged when the picture is reduced. Enlarged ones keep their edges.
    SetStretchBltMode(to, size.cx < picture_.width ? HALFTONE : COLORONCOLOR);
    SetBrushOrgEx(to, 0, 0, nullptr);
    StretchDIBits(to, place.left, place.top, size.cx, size.cy, 0, 0, picture_.width, picture_.height,
                  bitmap.bytes.data(), reinterpret_cast<const BITMAPINFO*>(&bitmap.info), DIB_RGB_COLORS, SRCCOPY);
    ExcludeClipRect(to, place.left, place.top, place.left + size.cx, place.top + size.cy);
    FillRect(to, &client, GetSysColorBrush(COLOR_APPWORKSPACE));
}

}  // namespace zentrix::host
