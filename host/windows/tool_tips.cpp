#include "host/windows/tool_tips.h"

#include <commctrl.h>

#include "host/text/encoding.h"
#include "host/windows/screen_place.h"

namespace zentrix::host {

namespace {

constexpr int widest = 420;          // pixels at 96 dots per inch, then lines are broken
constexpr int shown_for_ms = 30000;  // the system's 5 seconds are too short for several lines
constexpr UINT_PTR area_id = 1;

}  // namespace

tool_tips::tool_tips(HWND owner)
    : owner_{owner},
      window_{CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr,
                              GetModuleHandleW(nullptr), nullptr)}
{
    SendMessageW(window_.get(), TTM_SETMAXTIPWIDTH, 0, screen_pixels(widest));
    SendMessageW(window_.get(), TTM_SETDELAYTIME, TTDT_AUTOPOP, shown_for_ms);
}

void tool_tips::explain(HWND control, const std::string& text)
{
    add(TTF_IDISHWND, reinterpret_cast<UINT_PTR>(control), {}, text);
}

void tool_tips::explain_area(const RECT& area, const std::string& text)
{
    TTTOOLINFOW former{};
    former.cbSize = TTTOOLINFOW_V2_SIZE;
    former.hwnd = owner_;
    former.uId = area_id;
    SendMessageW(window_.get(), TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&former));
    if (!IsRectEmpty(&area)) add(0, area_id, area, text);
}

void tool_tips::add(UINT flags, UINT_PTR id, const RECT& area, const std::string& text)
{
    std::wstring wide = widen(text);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;  // accepted by all versions of the common controls
    tool.hwnd = owner_;
    tool.uFlags = flags | TTF_SUBCLASS;
    tool.uId = id;
    tool.rect = area;
    tool.lpszText = wide.data();  // copied
    SendMessageW(window_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace zentrix::host
