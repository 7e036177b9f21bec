#include "host/windows/floating_frame.h"

#include <commctrl.h>
#include <prsht.h>

namespace zentrix::host {

namespace {

constexpr DWORD frame_style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD frame_extended_style = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT;

}  // namespace

floating_frame::floating_frame(engine& engine, std::string title, HWND owner)
    : window{{title, frame_style, frame_extended_style, owner, {}}}, engine_{engine}, title_{std::move(title)}
{}

floating_frame::~floating_frame() { close(); }

void floating_frame::show()
{
    const bool is_new = !content_;
    if (is_new) content_ = static_cast<HWND>(engine_.open(title_, handle()));
    if (!content_) throw script_error{"The library did not open its window \"" + title_ + "\"."};
    ShowWindow(content_, SW_SHOW);  // its first showing sets its size
    fit_content();
    ShowWindow(handle(), SW_SHOWNOACTIVATE);
    if (is_new) SetFocus(content_);
}

void floating_frame::activate()
{
    if (!visible()) show();
    SetActiveWindow(handle());
}

void floating_frame::fit_content()
{
    RECT area;
    GetWindowRect(content_, &area);
    RECT around{0, 0, area.right - area.left, area.bottom - area.top};
    AdjustWindowRectEx(&around, frame_style, FALSE, frame_extended_style);
    SetWindowPos(content_, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowPos(handle(), nullptr, 0, 0, around.right - around.left, around.bottom - around.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void floating_frame::hide()
{
    if (content_) ShowWindow(content_, SW_HIDE);
    ShowWindow(handle(), SW_HIDE);
}

void floating_frame::close()
{
    ShowWindow(handle(), SW_HIDE);
    content_ = nullptr;
    engine_.close(title_);
}

bool floating_frame::handles(MSG& message) const
{
    if (!content_ || !IsChild(content_, message.hwnd)) return false;
    const bool key = message.message == WM_KEYDOWN, control = GetKeyState(VK_CONTROL) < 0;
    const bool tab = key && message.wParam == VK_TAB,
               page = key && (message.wParam == VK_PRIOR || message.wParam == VK_NEXT);
    const HWND sheet = FindWindowExW(content_, nullptr, L"#32770", nullptr);
    MSG to_sheet = message;
    // From the controls below the sheet, too, these keys select another page.
    if (control && (tab || page)) to_sheet.hwnd = sheet;
    // The sheet would take every Tab and never let the focus out of its pages.
    if (sheet && (control || !tab) && PropSheet_IsDialogMessage(sheet, &to_sheet)) return true;
    return IsDialogMessageW(content_, &message);
}

void floating_frame::remember_focus()
{
    const HWND focus = GetFocus();
    if (content_ && IsChild(content_, focus)) focus_ = focus;
}

void floating_frame::restore_focus()
{
    if (!content_ || !IsWindowVisible(content_)) return;
    const bool usable = IsChild(content_, focus_) && IsWindowVisible(focus_) && IsWindowEnabled(focus_);
    SetFocus(usable ? focus_ : content_);
}

LRESULT floating_frame::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_CLOSE: return hide(), 0;
        case WM_SETFOCUS: return restore_focus(), 0;
        case WM_ACTIVATE:
            if (LOWORD(wparam) == WA_INACTIVE) remember_focus();
            return window::handle_message(message, wparam, lparam);
        default: return window::handle_message(message, wparam, lparam);
    }
}

}  // namespace zentrix::host
