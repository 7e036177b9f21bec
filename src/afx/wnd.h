#pragma once

#include <windows.h>

#include "afx/gdi.h"
#include "afx/message_map.h"
#include "afx/object.h"
#include "afx/types.h"

class CDataExchange;

/// A window: made by CreateEx, or an existing one taken over by SubclassWindow. Its messages go through the message
/// maps of the object's classes, derived ones first, and then to the window's former procedure. Nothing that a handler
/// throws leaves the window procedure. All of it belongs to the thread that made the windows.
class CWnd : public CObject
{
    DECLARE_DYNAMIC(CWnd)
  public:
    CWnd() = default;
    ~CWnd() override { DestroyWindow(); }

    HWND m_hWnd = nullptr;
    HWND GetSafeHwnd() const { return m_hWnd; }

    /// The object of a window, or a passing one that lives until the outermost handler has returned. Null for null.
    static CWnd* FromHandle(HWND window);
    /// The object of a window, null when it has none.
    static CWnd* FromHandlePermanent(HWND window);

    BOOL CreateEx(DWORD extended_style, LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& place, CWnd* parent,
                  UINT id);
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
    int GetWindowText(LPTSTR text, int room) const { return ::GetWindowText(m_hWnd, text, room); }
    void SetWindowText(LPCTSTR text) { ::SetWindowText(m_hWnd, text); }
    LRESULT SendMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return ::SendMessage(m_hWnd, message, wparam, lparam);
    }
    BOOL PostMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return ::PostMessage(m_hWnd, message, wparam, lparam);
    }

    /// Moves values between members and controls as DoDataExchange says: TRUE reads the controls. Notifications that
    /// the controls send meanwhile are dropped. Returns FALSE when a control's content was refused.
    BOOL UpdateData(BOOL save_and_validate = TRUE);

  protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const { return GetThisMessageMap(); }

    virtual BOOL PreCreateWindow(CREATESTRUCT&) { return TRUE; }
    /// The window belongs to the object now, but its messages do not pass through it yet.
    virtual void PreSubclassWindow() {}
    /// The window is gone and the object no longer belongs to it.
    virtual void PostNcDestroy() {}
    virtual void DoDataExchange(CDataExchange*) {}

    virtual LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam);
    virtual BOOL OnCommand(WPARAM wparam, LPARAM lparam);
    virtual BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result);
    /// Hands the message that is being handled to the window's former procedure.
    LRESULT Default();

    // Handlers do by default what the former procedure does.
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
    void OnKeyDown(UINT, UINT, UINT) { Default(); }
    void OnKeyUp(UINT, UINT, UINT) { Default(); }
    void OnSetFocus(CWnd*) { Default(); }
    void OnKillFocus(CWnd*) { Default(); }
    void OnCaptureChanged(CWnd*) { Default(); }

  private:
    friend class AfxHookWindowCreate;
    friend LRESULT CALLBACK AfxWndProc(HWND, UINT, WPARAM, LPARAM) noexcept;

    void take_over(HWND window);
    const AFX_MSGMAP_ENTRY* find_entry(UINT message, UINT code, UINT id) const;
    void forget_window();

    WNDPROC former_ = nullptr;
};

/// The one window procedure of all CWnd.
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

/// While it lives, the next window that this thread creates becomes `window`'s, before its first message: for windows
/// that the system creates on our behalf (dialogs, property sheets).
class AfxHookWindowCreate
{
  public:
    explicit AfxHookWindowCreate(CWnd* window);
    ~AfxHookWindowCreate();
    AfxHookWindowCreate(const AfxHookWindowCreate&) = delete;
    AfxHookWindowCreate& operator=(const AfxHookWindowCreate&) = delete;

  private:
    CWnd* former_pending_;
    HHOOK hook_;
};
