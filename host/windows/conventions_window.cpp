#include "host/windows/conventions_window.h"

#include "host/pictures/zoom.h"
#include "host/text/encoding.h"

namespace zentrix::host {

namespace {

constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr LONG side = 220, gap = 12;  // pixels
constexpr LONG title_height = 20, meaning_height = 64, rules_height = 216;
constexpr LONG width = 3 * side + 4 * gap;
constexpr SIZE client{width, side + title_height + meaning_height + rules_height + 4 * gap};

constexpr char rules[] =
    "Angles are those of the displayed image: 0\u00b0 is right, 90\u00b0 is up, counter-clockwise.\n"
    "The panel removes the aberrations that it shows. C1 < 0 is underfocus: a bright fringe around a dark object.\n"
    "\n"
    "With the scattering angle w (real part right, imaginary part up) and coefficient = modulus \u00d7 exp(i angle):\n"
    "\u03c7(w) = 2\u03c0/\u03bb Re{ C1 |w|\u00b2/2 + A1 w*\u00b2/2 + B2 |w|\u00b2w* + A2 w*\u00b3/3 + C3 |w|\u2074/4 "
    "+ S3 |w|\u00b2w*\u00b2 + A3 w*\u2074/4 + ... }\n"
    "A wave is aberrated by exp(\u2212i\u03c7) and corrected by exp(+i\u03c7). A term of m-fold symmetry varies as "
    "cos(angle \u2212 m azimuth).\n"
    "\n"
    "Units: C1, A1, B2, A2 in nm; S3, A3, B4, D4, A4 in \u00b5m; C3, C5, A5, R5, S5 in mm. Widths of the envelope are "
    "rms widths.\n"
    "\n"
    "The literature on correctors multiplies B2, S3, B4, D4, S5 and R5 by powers of w instead of w*. Negate the angles "
    "of these six for values from such a source. Negate all angles for programs that count them clockwise.";

void draw_text(HDC to, const std::string& text, RECT place, UINT format)
{
    DrawTextW(to, widen(text).c_str(), -1, &place, DT_NOPREFIX | DT_WORDBREAK | format);
}

}  // namespace

conventions_window::conventions_window(HWND owner, engine& engine)
    : window{{"Conventions", style, WS_EX_TOOLWINDOW, owner, client}}
{
    for (auto& one : test_pictures(engine)) {
        pictures_.push_back({std::move(one), {}});
        auto& [what, zoomed] = pictures_.back();
        zoomed.resize({side, side});
        zoom(what.shown, side, side, zoomed.pixels());
    }
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
    LONG left = gap;
    for (const auto& [what, zoomed] : pictures_) {
        const LONG title_top = gap + side + gap / 2, text_top = title_top + title_height;
        zoomed.draw(to, left, gap);
        draw_text(to, what.title, {left, title_top, left + side, text_top}, DT_CENTER);
        draw_text(to, what.meaning, {left, text_top, left + side, text_top + meaning_height}, 0);
        left += side + gap;
    }
    draw_text(to, rules, {gap, client.cy - rules_height, width - gap, client.cy}, 0);
}

}  // namespace zentrix::host
