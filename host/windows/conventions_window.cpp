#include "host/windows/conventions_window.h"

#include <algorithm>

#include "host/pictures/zoom.h"
#include "host/text/encoding.h"
#include "host/windows/screen_place.h"

namespace zentrix::host {

namespace {

constexpr DWORD frame_style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr int side_at_96 = 220, gap_at_96 = 12;  // pixels at 96 dots per inch

// Only characters that the system's font for dialogs has everywhere: it need not have Greek or raised digits.
constexpr char rules[] =
    "Angles are those of the displayed image: 0\u00b0 is right, 90\u00b0 is up, counter-clockwise.\n"
    "The panel removes the aberrations that it shows. C1 < 0 is underfocus: a bright fringe around a dark object.\n"
    "\n"
    "With the scattering angle w (real part right, imaginary part up) and coefficient = modulus \u00d7 exp(i angle):\n"
    "chi(w) = 2\u03c0/wavelength Re{ C1 |w|\u00b2/2 + A1 w*\u00b2/2 + B2 |w|\u00b2w* + A2 w*\u00b3/3 + C3 |w|^4/4 "
    "+ S3 |w|\u00b2w*\u00b2 + A3 w*^4/4 + ... }\n"
    "A wave is aberrated by exp(\u2212i chi) and corrected by exp(+i chi). A term of m-fold symmetry varies as "
    "cos(angle \u2212 m azimuth).\n"
    "\n"
    "Units: C1, A1, B2, A2 in nm; S3, A3, B4, D4, A4 in \u00b5m; C3, C5, A5, R5, S5 in mm. Widths of the envelope are "
    "rms widths.\n"
    "\n"
    "The literature on correctors multiplies B2, S3, B4, D4, S5 and R5 by powers of w instead of w*. Negate the angles "
    "of these six for values from such a source. Negate all angles for programs that count them clockwise.";

/// Of a text in lines of this width, in the font of `to` [pixels]
LONG height_of(HDC to, const std::string& text, LONG width)
{
    RECT area{0, 0, width, 0};
    DrawTextW(to, widen(text).c_str(), -1, &area, DT_NOPREFIX | DT_WORDBREAK | DT_CALCRECT);
    return area.bottom;
}

void draw_text(HDC to, const std::string& text, RECT place, UINT format)
{
    DrawTextW(to, widen(text).c_str(), -1, &place, DT_NOPREFIX | DT_WORDBREAK | format);
}

}  // namespace

conventions_window::conventions_window(HWND owner, engine& engine)
    : window{{"Conventions", frame_style, WS_EX_TOOLWINDOW, owner, {}}},
      side_{screen_pixels(side_at_96)},
      gap_{screen_pixels(gap_at_96)}
{
    for (auto& one : test_pictures(engine)) {
        pictures_.push_back({std::move(one), {}});
        auto& [what, zoomed] = pictures_.back();
        zoomed.resize({side_, side_});
        zoom(what.shown, side_, side_, zoomed.pixels());
    }
    fit();
}

/// Measures the texts and makes the window as large as they need.
void conventions_window::fit()
{
    const win32::window_dc dc{handle()};
    const win32::selected_object font{dc.get(), GetStockObject(DEFAULT_GUI_FONT)};
    LONG meaning_height = 0;
    for (const auto& [what, zoomed] : pictures_) {
        title_height_ = std::max(title_height_, height_of(dc.get(), what.title, side_));
        meaning_height = std::max(meaning_height, height_of(dc.get(), what.meaning, side_));
    }
    const LONG columns = static_cast<LONG>(pictures_.size()), width = columns * side_ + (columns + 1) * gap_;
    rules_top_ = 3 * gap_ + side_ + title_height_ + meaning_height + gap_ / 2;
    RECT area{0, 0, width, rules_top_ + height_of(dc.get(), rules, width - 2 * gap_) + gap_};
    AdjustWindowRectEx(&area, frame_style, FALSE, WS_EX_TOOLWINDOW);
    SetWindowPos(handle(), nullptr, 0, 0, area.right - area.left, area.bottom - area.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT conventions_window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_PAINT: return paint(), 0;
        case WM_ERASEBKGND: return 1;  // painting covers the whole area
        case WM_KEYDOWN:
            if (wparam == VK_ESCAPE && close_) close_();
            return 0;
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        default: return window::handle_message(message, wparam, lparam);
    }
}

void conventions_window::paint()
{
    PAINTSTRUCT state;
    const HDC to = BeginPaint(handle(), &state);
    draw(to);
    EndPaint(handle(), &state);
}

void conventions_window::draw(HDC to)
{
    RECT area;
    GetClientRect(handle(), &area);
    FillRect(to, &area, GetSysColorBrush(COLOR_WINDOW));
    const win32::selected_object font{to, GetStockObject(DEFAULT_GUI_FONT)};
    SetBkMode(to, TRANSPARENT);
    SetTextColor(to, GetSysColor(COLOR_WINDOWTEXT));
    LONG left = gap_;
    for (const auto& [what, zoomed] : pictures_) {
        const LONG title_top = gap_ + side_ + gap_ / 2, text_top = title_top + title_height_ + gap_ / 2;
        zoomed.draw(to, left, gap_);
        draw_text(to, what.title, {left, title_top, left + side_, text_top}, DT_CENTER);
        draw_text(to, what.meaning, {left, text_top, left + side_, rules_top_}, 0);
        left += side_ + gap_;
    }
    draw_text(to, rules, {gap_, rules_top_, area.right - gap_, area.bottom}, 0);
}

}  // namespace zentrix::host
