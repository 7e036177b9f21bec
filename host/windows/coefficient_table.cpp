#include "host/windows/coefficient_table.h"

#include <commctrl.h>

#include <cstdio>
#include <optional>
#include <stdexcept>

#include "host/objects/value.h"
#include "host/text/encoding.h"
#include "host/text/number_text.h"
#include "host/windows/screen_place.h"
#include "lens/phase_shifts.h"

namespace zentrix::host {

namespace {

constexpr DWORD table_style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN;
// At 96 dots per inch. The height is that of all rows.
constexpr int client_width = 370, client_height = 336, heading_height = 42, margin = 6;
constexpr COLORREF noticeable_colour = RGB(176, 0, 32);

struct column
{
    const wchar_t* title;
    int width;  // pixels at 96 dots per inch
    int format;
};

constexpr column columns_of_table[coefficient_table::columns] = {
    {L"", 36, LVCFMT_LEFT},       {L"Value", 78, LVCFMT_RIGHT},       {L"Unit", 40, LVCFMT_LEFT},
    {L"Angle", 50, LVCFMT_RIGHT}, {L"Shift [rad]", 76, LVCFMT_RIGHT}, {L"Above \u03c0/4", 66, LVCFMT_LEFT}};

constexpr char tip[] =
    "Value and angle as on the panel.\n"
    "Shift: by how much the coefficient alone shifts the phase, at the frequency above and the azimuth where it shifts "
    "most.\n"
    "Red and \"yes\": more than \u03c0/4, which is visible in the image.";

std::string short_number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, value < 1e5 ? (value < 100 ? "%.2f" : "%.0f") : "%.2g", value);
    return text;
}

std::string heading_of(const lens::phase_shifts& shifts)
{
    char text[200];
    std::snprintf(
        text, sizeof text,
        "Phase shift of each coefficient alone at the %s,\n%.3g 1/nm (%.3g nm). Above \u03c0/4 it is visible.",
        shifts.at_information_limit ? "information limit" : "Nyquist frequency", shifts.frequency,
        1 / shifts.frequency);
    return text;
}

HWND child(HWND parent, const wchar_t* kind, DWORD child_style, DWORD extended)
{
    const HWND made = CreateWindowExW(extended, kind, L"", WS_CHILD | WS_VISIBLE | child_style, 0, 0, 0, 0, parent,
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!made) throw script_error{"The table of coefficients cannot be created."};
    SendMessageW(made, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    return made;
}

std::string text_of_window(HWND window)
{
    wchar_t text[300] = {};
    GetWindowTextW(window, text, static_cast<int>(std::size(text)));
    return narrow(text);
}

}  // namespace

coefficient_table::coefficient_table(HWND owner)
    : window{{"Coefficients", table_style, WS_EX_TOOLWINDOW, owner,
              SIZE{screen_pixels(client_width), screen_pixels(client_height)}}}
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    heading_ = child(handle(), L"STATIC", SS_NOPREFIX, 0);
    list_ = child(handle(), WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_NOSORTHEADER, WS_EX_CLIENTEDGE);
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    add_columns();
    lay_out();
    tips_.emplace(handle());
    tips_->explain(list_, tip);
}

void coefficient_table::add_columns()
{
    for (int i = 0; i < columns; ++i) {
        const column& one = columns_of_table[i];
        LVCOLUMNW header{};
        header.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        header.fmt = one.format;
        header.cx = screen_pixels(one.width);
        header.pszText = const_cast<wchar_t*>(one.title);  // the list copies it
        SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&header));
    }
    for (const auto& about : lens::all_coefficients) {
        std::wstring name = widen(about.name);
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(about.which);
        item.pszText = name.data();
        SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        set_cell(item.iItem, 2, std::string{about.unit} == "um" ? "\u00b5m" : std::string{about.unit});
    }
}

void coefficient_table::show(const lens::optics& setup)
{
    std::optional<lens::phase_shifts> shifts;
    std::string heading;
    try {
        shifts = lens::phase_shifts_of(setup);
        heading = heading_of(*shifts);
    } catch (const std::invalid_argument& problem) {
        heading = problem.what();
    }
    if (heading != this->heading()) SetWindowTextW(heading_, widen(heading).c_str());
    for (const auto& about : lens::all_coefficients) {
        const int row = static_cast<int>(about.which);
        const lens::polar& value = setup.lens[about.which];
        const bool matters = shifts && shifts->of(about.which) > lens::noticeable_phase_shift;
        matters_[static_cast<std::size_t>(row)] = matters;
        set_cell(row, 1, number_text(value.modulus));
        set_cell(row, 3, about.symmetry == 0 ? "" : number_text(value.angle_degrees) + "\u00b0");
        set_cell(row, 4, shifts ? short_number(shifts->of(about.which)) : "");
        set_cell(row, 5, matters ? "yes" : "");
    }
}

std::string coefficient_table::heading() const { return text_of_window(heading_); }

std::string coefficient_table::cell(int row, int column) const
{
    wchar_t text[64] = {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = static_cast<int>(std::size(text));
    SendMessageW(list_, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return narrow(text);
}

void coefficient_table::set_cell(int row, int column, const std::string& text)
{
    if (cell(row, column) == text) return;
    std::wstring wide = widen(text);
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = wide.data();
    SendMessageW(list_, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void coefficient_table::lay_out()
{
    RECT area;
    GetClientRect(handle(), &area);
    const int inset = screen_pixels(margin), list_top = screen_pixels(heading_height);
    MoveWindow(heading_, inset, inset, area.right - 2 * inset, list_top - 2 * inset, TRUE);
    MoveWindow(list_, 0, list_top, area.right, area.bottom - list_top, TRUE);
}

LRESULT coefficient_table::colour_of_row(LPARAM drawing) const
{
    auto& now = *reinterpret_cast<NMLVCUSTOMDRAW*>(drawing);
    if (now.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    const auto row = now.nmcd.dwItemSpec;
    if (now.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && row < matters_.size() && matters_[row])
        now.clrText = noticeable_colour;
    return CDRF_DODEFAULT;
}

LRESULT coefficient_table::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_SIZE: return lay_out(), 0;
        case WM_SETFOCUS: return SetFocus(list_), 0;
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        case WM_CTLCOLORSTATIC:
            SetBkMode(reinterpret_cast<HDC>(wparam), TRANSPARENT);
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
        case WM_ERASEBKGND: {
            RECT area;
            GetClientRect(handle(), &area);
            FillRect(reinterpret_cast<HDC>(wparam), &area, GetSysColorBrush(COLOR_BTNFACE));
            return 1;
        }
        case WM_NOTIFY:
            if (reinterpret_cast<NMHDR*>(lparam)->code == NM_CUSTOMDRAW) return colour_of_row(lparam);
            return 0;
        default: return window::handle_message(message, wparam, lparam);
    }
}

}  // namespace zentrix::host
