#pragma once

#include <windows.h>

#include "afx/gdi.h"
#include "afx/message_map.h"
#include "afx/object.h"
#include "afx/types.h"
#include "win32/handles.h"

class CDataExchange;

/// A window, created by CreateEx or an existing one attached by SubclassWindow. Messages go through the message maps of
/// the object's classes, most derived first, then to the window's previous procedure. No exception of a handler leaves
/// the window procedure. All functions must be called on the thread that created the window.
class CWnd : public CObject
{
  public:
    CWnd() = default;
    ~CWnd() override { DestroyWindow(); }

    HWND m_hWnd = nullptr;

    /// The object of a window, or a temporary wrapper that exists until the outermost handler returns. Null for null.
    static CWnd* FromHandle(HWND window);
    /// The object of a window; null when it has none.
    static CWnd* FromHandlePermanent(HWND window);

    /// Creates a window. FALSE when the system creates none.
    BOOL CreateEx(DWORD extended_style, LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& place, CWnd* parent,
                  UINT id);
    /// Attaches the object to an existing window. FALSE when either of them is attached already.
    BOOL SubclassWindow(HWND window);
    virtual BOOL DestroyWindow();

    BOOL ShowWindow(int show) { return ::ShowWindow(m_hWnd, show); }
    BOOL EnableWindow(BOOL enable = TRUE) { return ::EnableWindow(m_hWnd, enable); }
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    void Invalidate(BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, erase); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* SetParent(CWnd* parent) { return FromHandle(::SetParent(m_hWnd, parent->m_hWnd)); }
    CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_EXSTYLE)); }
    void GetClientRect(RECT* area) const { ::GetClientRect(m_hWnd, area); }
    void GetWindowRect(RECT* area) const { ::GetWindowRect(m_hWnd, area); }
    void MoveWindow(const RECT* place, BOOL repaint = TRUE);
    BOOL SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags);
    int SetWindowRgn(HRGN region, BOOL redraw) { return ::SetWindowRgn(m_hWnd, region, redraw); }
    int GetWindowText(LPTSTR text, int size) const { return ::GetWindowText(m_hWnd, text, size); }
    void SetWindowText(LPCTSTR text) { ::SetWindowText(m_hWnd, text); }
    LRESULT SendMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return ::SendMessage(m_hWnd, message, wparam, lparam);
    }
    BOOL PostMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return ::PostMessage(m_hWnd, message, wparam, lparam);
    }

    /// Runs DoDataExchange: TRUE reads the controls into the members, FALSE fills the controls. Notifications that the
    /// controls send meanwhile are dropped. Returns FALSE when a control's content was refused.
    BOOL UpdateData(BOOL save_and_validate = TRUE);

  protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const { return GetThisMessageMap(); }

    virtual BOOL PreCreateWindow(CREATESTRUCT&) { return TRUE; }
    /// Called when the object is attached, before it receives messages. An exception detaches it again.
    virtual void PreSubclassWindow() {}
    /// Called when the window is destroyed and the object detached.
    virtual void PostNcDestroy() {}
    virtual void DoDataExchange(CDataExchange*) {}

    virtual LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam);
    virtual BOOL OnCommand(WPARAM wparam, LPARAM lparam);
    virtual BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result);
    /// Passes the message being handled to the window's previous procedure.
    LRESULT Default();
    /// The message being handled.
    static const MSG& GetCurrentMessage();

    // The default handlers call the previous procedure.
    int OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
    void OnPaint() { Default(); }
    void OnSize(UINT, int, int) { Default(); }
    void OnShowWindow(BOOL, UINT) { Default(); }
    void OnEnable(BOOL) { Default(); }
    BOOL OnEraseBkgnd(CDC*) { return static_cast<BOOL>(Default()); }
    void OnHScroll(UINT, UINT, CWnd*) { Default(); }
    void OnLButtonDown(UINT, CPoint) { Default(); }
    void OnLButtonUp(UINT, CPoint) { Default(); }
    void OnMouseMove(UINT, CPoint) { Default(); }
    BOOL OnMouseWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
    UINT OnGetDlgCode() { return static_cast<UINT>(Default()); }
    void OnChar(UINT, UINT, UINT) { Default(); }
    void OnKeyDown(UINT, UINT, UINT) { Default(); }
    void OnKeyUp(UINT, UINT, UINT) { Default(); }
    void OnSetFocus(CWnd*) { Default(); }
    void OnKillFocus(CWnd*) { Default(); }
    void OnCaptureChanged(CWnd*) { Default(); }

  private:
    friend class AfxHookWindowCreate;
    friend LRESULT CALLBACK AfxWndProc(HWND, UINT, WPARAM, LPARAM) noexcept;

    void take_over(HWND window);
    void detach();

    WNDPROC previous_ = nullptr;
};

/// The window procedure of all CWnd.
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

/// During its lifetime, the next window that this thread creates is attached to `window` before its first message. For
/// windows that the system creates on our behalf (dialogs, property sheets).
class AfxHookWindowCreate
{
  public:
    explicit AfxHookWindowCreate(CWnd* window);
    ~AfxHookWindowCreate();
    AfxHookWindowCreate(const AfxHookWindowCreate&) = delete;
    AfxHookWindowCreate& operator=(const AfxHookWindowCreate&) = delete;

  private:
    static LRESULT CALLBACK on_create(int code, WPARAM wparam, LPARAM lparam) noexcept;

    CWnd* previous_;
    win32::unique_hook hook_;
};
