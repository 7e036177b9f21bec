#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace zentrix::host {

/// UTF-8 as the system's windows have it, and back.
std::wstring wide(const std::string& utf8);
std::string utf8(const std::wstring& text);

/// A top-level window of the program's own; the object's end is the window's end.
class window
{
  public:
    virtual ~window();
    window(const window&) = delete;
    window& operator=(const window&) = delete;

    HWND handle() const noexcept { return handle_; }
    bool visible() const noexcept { return IsWindowVisible(handle_); }

    /// Who is told of exceptions in window procedures, which must not get into the system.
    static void on_failure(std::function<void(const std::string& text)> told);

  protected:
    struct form
    {
        std::string title;
        DWORD style = WS_OVERLAPPEDWINDOW, extended_style = 0;
        HWND owner = nullptr;
        SIZE client{};  ///< pixels
    };
    /// Throws  script_error when the system makes no window
    explicit window(const form& wanted);

    /// Messages arrive from the end of the constructor on.
    virtual LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

    HWND handle_ = nullptr;
};

}  // namespace zentrix::host
