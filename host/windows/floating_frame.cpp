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
    if (!content_) content_ = static_cast<HWND>(engine_.open(title_, handle()));
    if (!content_) throw script_error{"The library did not open its window \"" + title_ + "\"."};
    ShowWindow(content_, SW_SHOW);  // its first showing sets its size
    fit_content();
    ShowWindow(handle(), SW_SHOWNOACTIVATE);
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
    const HWND sheet = FindWindowExW(content_, nullptr, L"#32770", nullptr);
    if (sheet && PropSheet_IsDialogMessage(sheet, &message)) return true;
    return IsDialogMessageW(content_, &message);
}

LRESULT floating_frame::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message != WM_CLOSE) return window::handle_message(message, wparam, lparam);
    hide();
    return 0;
}

}  // namespace zentrix::host
