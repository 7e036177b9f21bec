#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

/// Owners of Win32 handles. Each releases its handle in its destructor.
namespace win32 {

template <class Handle, auto close>
struct handle_closer
{
    using pointer = Handle;
    void operator()(Handle handle) const noexcept { close(handle); }
};

/// A std::unique_ptr for a system handle whose null value means "none", for example unique_handle<HDC, ::DeleteDC>.
template <class Handle, auto close>
using unique_handle = std::unique_ptr<std::remove_pointer_t<Handle>, handle_closer<Handle, close>>;

using unique_kernel_object = unique_handle<HANDLE, ::CloseHandle>;
using unique_memory_dc = unique_handle<HDC, ::DeleteDC>;
using unique_gdi_object = unique_handle<HGDIOBJ, ::DeleteObject>;
using unique_bitmap = unique_handle<HBITMAP, ::DeleteObject>;
using unique_brush = unique_handle<HBRUSH, ::DeleteObject>;
using unique_region = unique_handle<HRGN, ::DeleteObject>;
using unique_menu = unique_handle<HMENU, ::DestroyMenu>;
using unique_key_table = unique_handle<HACCEL, ::DestroyAcceleratorTable>;
using unique_window = unique_handle<HWND, ::DestroyWindow>;
using unique_hook = unique_handle<HHOOK, ::UnhookWindowsHookEx>;

/// The device context of a window's client area, or of the screen for a null window.
class window_dc
{
  public:
    explicit window_dc(HWND window) : window_{window}, dc_{::GetDC(window)} {}
    ~window_dc() { ::ReleaseDC(window_, dc_); }
    window_dc(const window_dc&) = delete;
    window_dc& operator=(const window_dc&) = delete;

    HDC get() const noexcept { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

/// Selects an object into a device context and restores the previous object on destruction. Both must outlive it.
class selected_object
{
  public:
    selected_object(HDC dc, HGDIOBJ object) : dc_{dc}, previous_{::SelectObject(dc, object)} {}
    ~selected_object() { ::SelectObject(dc_, previous_); }
    selected_object(const selected_object&) = delete;
    selected_object& operator=(const selected_object&) = delete;

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

}  // namespace win32
