#include "host/windows/status_line.h"

#include <commctrl.h>

#include <algorithm>

#include "host/objects/value.h"
#include "host/text/encoding.h"

namespace zentrix::host {

namespace {

enum part
{
    left_part,
    note_part,
    zoom_part,
    part_count
};

/// The width of a part for a text, with the control's margins.
int width_of(HWND bar, const std::string& text)
{
    if (text.empty()) return 0;
    const win32::window_dc dc{bar};
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(bar, WM_GETFONT, 0, 0));
    const win32::selected_object selected{dc.get(), font ? font : GetStockObject(DEFAULT_GUI_FONT)};
    const std::wstring wide = widen(text);
    SIZE size{};
    GetTextExtentPoint32W(dc.get(), wide.c_str(), static_cast<int>(wide.size()), &size);
    return size.cx + 2 * size.cy;
}

}  // namespace

status_line::status_line(HWND parent)
{
    const INITCOMMONCONTROLSEX bars{sizeof bars, ICC_BAR_CLASSES};
    InitCommonControlsEx(&bars);
    handle_.reset(CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, parent,
                                  nullptr, GetModuleHandleW(nullptr), nullptr));
    if (!handle_) throw script_error{"The status line of a window cannot be created."};
}

int status_line::height() const
{
    RECT area;
    GetWindowRect(handle_.get(), &area);
    return area.bottom - area.top;
}

void status_line::place()
{
    SendMessageW(handle_.get(), WM_SIZE, 0, 0);
    RECT area;
    GetClientRect(handle_.get(), &area);
    const int grip = height(), zoom_width = width_of(handle_.get(), zoom_), note_width = width_of(handle_.get(), note_);
    const int ends[part_count] = {std::max<int>(0, area.right - grip - zoom_width - note_width),
                                  std::max<int>(0, area.right - grip - zoom_width), -1};
    SendMessageW(handle_.get(), SB_SETPARTS, part_count, reinterpret_cast<LPARAM>(ends));
    show();
}

void status_line::say(const std::string& text)
{
    message_ = text;
    show();
}

void status_line::point(const std::string& text)
{
    pointed_ = text;
    if (message_.empty()) show();
}

void status_line::note(const std::string& text)
{
    if (text == note_) return;
    note_ = text;
    place();
}

void status_line::zoom(const std::string& text)
{
    if (text == zoom_) return;
    zoom_ = text;
    place();
}

void status_line::show()
{
    set_part(left_part, message_.empty() ? pointed_ : message_);
    set_part(note_part, note_);
    set_part(zoom_part, zoom_);
}

void status_line::set_part(int part, const std::string& text)
{
    // Without a frame where there is no text: parts of no width would leave lines.
    const WPARAM look = part == left_part || text.empty() ? SBT_NOBORDERS : 0;
    SendMessageW(handle_.get(), SB_SETTEXTW, static_cast<WPARAM>(part) | look,
                 reinterpret_cast<LPARAM>(widen(text).c_str()));
}

}  // namespace zentrix::host
