#include "panel/tool_tips.h"

namespace qorv::panel {

namespace {

constexpr int widest = 420;             // [pixels], then lines are broken
constexpr int shown_for_ms = 30000;     // the system's 5 seconds are too short for four lines
constexpr UINT id_of_unnamed_edit = 0;  // in the knobs

bool is_static(HWND control)
{
    wchar_t name[8] = {};
    ::GetClassNameW(control, name, 8);
    return ::lstrcmpiW(name, L"Static") == 0;
}

}  // namespace

BOOL tool_tips::Create(CWnd* parent)
{
    if (!CreateEx(WS_EX_TOPMOST, TOOLTIPS_CLASS, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                  CRect{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT}, parent, 0))
        return FALSE;
    SendMessage(TTM_SETMAXTIPWIDTH, 0, widest);
    SendMessage(TTM_SETDELAYTIME, TTDT_AUTOPOP, shown_for_ms);
    return TRUE;
}

void tool_tips::Explain(const CWnd& dialog, HWND control)
{
    if (!m_hWnd || !control) return;
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;  // accepted by all versions of the common controls
    tool.hwnd = dialog.m_hWnd;
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    tool.uFlags = TTF_SUBCLASS;
    if (is_static(control)) {
        tool.uId = static_cast<UINT_PTR>(::GetDlgCtrlID(control));
        ::GetWindowRect(control, &tool.rect);
        ::MapWindowPoints(nullptr, dialog.m_hWnd, reinterpret_cast<POINT*>(&tool.rect), 2);
    } else {
        tool.uFlags |= TTF_IDISHWND;
        tool.uId = reinterpret_cast<UINT_PTR>(control);
    }
    SendMessage(TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

HWND asked_by_tool_tips(HWND dialog, const NMHDR& notification)
{
    if (notification.code != static_cast<UINT>(TTN_GETDISPINFOW)) return nullptr;
    const auto& question = reinterpret_cast<const NMTTDISPINFOW&>(notification);
    if (!(question.uFlags & TTF_IDISHWND)) return ::GetDlgItem(dialog, static_cast<int>(notification.idFrom));
    const auto control = reinterpret_cast<HWND>(notification.idFrom);
    return ::GetDlgCtrlID(control) == id_of_unnamed_edit ? ::GetParent(control) : control;
}

void answer_tool_tips(NMHDR& notification, const std::string& text, std::wstring& buffer)
{
    buffer.assign(text.begin(), text.end());  // ASCII
    reinterpret_cast<NMTTDISPINFOW&>(notification).lpszText = buffer.data();
}

}  // namespace qorv::panel
