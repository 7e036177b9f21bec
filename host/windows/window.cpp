#include "host/windows/window.h"

#include "host/objects/value.h"

namespace zentrix::host {

namespace {

constexpr wchar_t class_name[] = L"ZentrixWindow";
std::function<void(const std::string&)> failure_listener;

void tell_failure(const std::string& text) noexcept
{
    try {
        if (failure_listener) failure_listener(text);
    } catch (...) {  // there is nobody left to tell
    }
}

void register_class(WNDPROC procedure)
{
    WNDCLASSEXW made{};
    made.cbSize = sizeof made;
    made.style = CS_HREDRAW | CS_VREDRAW;
    made.lpfnWndProc = procedure;
    made.hInstance = GetModuleHandleW(nullptr);
    made.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
    made.lpszClassName = class_name;
    RegisterClassExW(&made);
}

}  // namespace

std::wstring wide(const std::string& utf8)
{
    const auto convert = [&](wchar_t* to, int room) {
        return MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), to, room);
    };
    std::wstring text(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
    convert(text.data(), static_cast<int>(text.size()));
    return text;
}

std::string utf8(const std::wstring& text)
{
    const auto convert = [&](char* to, int room) {
        return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), to, room, nullptr, nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

window::window(const form& wanted)
{
    static const bool registered = (register_class(&procedure), true);
    static_cast<void>(registered);
    RECT place{0, 0, wanted.client.cx, wanted.client.cy};
    AdjustWindowRectEx(&place, wanted.style, FALSE, wanted.extended_style);
    handle_ = CreateWindowExW(wanted.extended_style, class_name, wide(wanted.title).c_str(), wanted.style,
                              CW_USEDEFAULT, CW_USEDEFAULT, place.right - place.left, place.bottom - place.top,
                              wanted.owner, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!handle_) throw script_error{"The window \"" + wanted.title + "\" cannot be created."};
    SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

window::~window()
{
    if (!handle_) return;
    SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);  // from here on the system's own procedure answers
    DestroyWindow(handle_);
}

void window::on_failure(std::function<void(const std::string& text)> told) { failure_listener = std::move(told); }

LRESULT window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    return DefWindowProcW(handle_, message, wparam, lparam);
}

LRESULT CALLBACK window::procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    auto* const self = reinterpret_cast<window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (!self) return DefWindowProcW(handle, message, wparam, lparam);
    try {
        return self->handle_message(message, wparam, lparam);
    } catch (const std::exception& problem) {
        tell_failure(problem.what());
    } catch (...) {
        tell_failure("An unknown error occurred.");
    }
    return 0;
}

}  // namespace zentrix::host
