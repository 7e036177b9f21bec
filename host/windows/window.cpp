#include "host/windows/window.h"

#include <cstdio>

#include "host/objects/value.h"
#include "host/text/encoding.h"
#include "host/windows/resource.h"

namespace zentrix::host {

namespace {

constexpr wchar_t class_name[] = L"ZentrixWindow";
std::function<void(const std::string&)> failure_listener;

void report(const char* text)
{
    if (failure_listener)
        failure_listener(text);
    else
        std::fprintf(stderr, "zentrix: %s\n", text);
}

void register_class(WNDPROC procedure)
{
    WNDCLASSEXW form{};
    form.cbSize = sizeof form;
    form.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    form.lpfnWndProc = procedure;
    form.hInstance = GetModuleHandleW(nullptr);
    form.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
    form.hIcon = LoadIconW(form.hInstance, MAKEINTRESOURCEW(IDI_PROGRAM));
    form.lpszClassName = class_name;
    RegisterClassExW(&form);
}

}  // namespace

window::window(const form& description)
{
    static const bool registered = (register_class(&procedure), true);
    static_cast<void>(registered);
    RECT place{0, 0, description.client.cx, description.client.cy};
    AdjustWindowRectEx(&place, description.style, FALSE, description.extended_style);
    handle_.reset(CreateWindowExW(description.extended_style, class_name, widen(description.title).c_str(),
                                  description.style, CW_USEDEFAULT, CW_USEDEFAULT, place.right - place.left,
                                  place.bottom - place.top, description.owner, nullptr, GetModuleHandleW(nullptr),
                                  nullptr));
    if (!handle_) throw script_error{"The window \"" + description.title + "\" cannot be created."};
    SetWindowLongPtrW(handle(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

window::~window()
{
    SetWindowLongPtrW(handle(), GWLP_USERDATA, 0);  // the messages of its destruction go to DefWindowProc
}

void window::on_failure(std::function<void(const std::string& text)> listener)
{
    failure_listener = std::move(listener);
}

void window::report_exception() noexcept
{
    try {
        try {
            throw;
        } catch (const std::exception& problem) {
            report(problem.what());
        } catch (...) {
            report("An unknown error occurred.");
        }
    } catch (...) {
        std::fputs("zentrix: An error could not be reported.\n", stderr);
    }
}

LRESULT window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    // Alt and Alt with a letter are for the menu of the program. Alt and Space are for the window's own.
    const bool for_menu = message == WM_SYSCOMMAND && (wparam & 0xfff0) == SC_KEYMENU && lparam != ' ';
    const HWND owner = GetWindow(handle(), GW_OWNER);
    if (for_menu && owner && !GetMenu(handle())) return SendMessageW(owner, message, wparam, lparam);
    return DefWindowProcW(handle(), message, wparam, lparam);
}

LRESULT CALLBACK window::procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    auto* const self = reinterpret_cast<window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (!self) return DefWindowProcW(handle, message, wparam, lparam);
    try {
        return self->handle_message(message, wparam, lparam);
    } catch (...) {
        report_exception();
        return 0;
    }
}

}  // namespace zentrix::host
