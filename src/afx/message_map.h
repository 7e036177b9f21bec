#pragma once

#include <windows.h>

#include <commctrl.h>

#include "afx/types.h"

class CWnd;

/// One line of a message map: the message, and a function that unpacks its parameters and calls the handler. Commands
/// and notifications are distinguished by `code` and by the range of control ids.
struct AFX_MSGMAP_ENTRY
{
    UINT message;
    UINT code;
    UINT first_id, last_id;
    LRESULT (*invoke)(CWnd* window, WPARAM wparam, LPARAM lparam);
};

struct AFX_MSGMAP
{
    const AFX_MSGMAP* (*base)();      ///< null at the root
    const AFX_MSGMAP_ENTRY* entries;  ///< terminated by an entry without a function
};

/// The entry for a message in this map or, failing that, in the maps of its bases. Null when there is none.
const AFX_MSGMAP_ENTRY* AfxFindMessageEntry(const AFX_MSGMAP* map, UINT message, UINT code, UINT id);

/// Added to WM_COMMAND for notifications that a control handles itself, before its parent does.
inline constexpr UINT AFX_REFLECTED = 0x8000;

#define DECLARE_MESSAGE_MAP()                     \
  protected:                                      \
    static const AFX_MSGMAP* GetThisMessageMap(); \
    const AFX_MSGMAP* GetMessageMap() const override { return GetThisMessageMap(); }

// The entries' functions are lambdas inside a member function: they can call protected handlers, and no casts between
// member function types are needed.
// clang-format off
#define BEGIN_MESSAGE_MAP(the_class, base_class)        \
    const AFX_MSGMAP* the_class::GetThisMessageMap()    \
    {                                                   \
        using ThisClass = the_class;                    \
        using BaseClass = base_class;                   \
        static constexpr AFX_MSGMAP_ENTRY entries[] = {

#define END_MESSAGE_MAP()                                                                        \
            {0, 0, 0, 0, nullptr}                                                                \
        };                                                                                       \
        static constexpr AFX_MSGMAP map{[] { return BaseClass::GetThisMessageMap(); }, entries}; \
        return &map;                                                                             \
    }
// clang-format on

#define AFX_ENTRY(message, code, first, last, result)                                              \
    {message, code, first, last,                                                                   \
     [](CWnd* window, [[maybe_unused]] WPARAM wparam, [[maybe_unused]] LPARAM lparam) -> LRESULT { \
         [[maybe_unused]] auto& self = static_cast<ThisClass&>(*window);                           \
         return result;                                                                            \
     }},

#define ON_MESSAGE(message, handler) AFX_ENTRY(message, 0, 0, 0, (self.*handler)(wparam, lparam))
#define ON_WM_CREATE() AFX_ENTRY(WM_CREATE, 0, 0, 0, self.OnCreate(reinterpret_cast<LPCREATESTRUCT>(lparam)))
#define ON_WM_PAINT() AFX_ENTRY(WM_PAINT, 0, 0, 0, (self.OnPaint(), 0))
#define ON_WM_SIZE() \
    AFX_ENTRY(WM_SIZE, 0, 0, 0, (self.OnSize(static_cast<UINT>(wparam), LOWORD(lparam), HIWORD(lparam)), 0))
#define ON_WM_SHOWWINDOW() \
    AFX_ENTRY(WM_SHOWWINDOW, 0, 0, 0, (self.OnShowWindow(wparam != 0, static_cast<UINT>(lparam)), 0))
#define ON_WM_ENABLE() AFX_ENTRY(WM_ENABLE, 0, 0, 0, (self.OnEnable(wparam != 0), 0))
#define ON_WM_ERASEBKGND()                     \
    AFX_ENTRY(WM_ERASEBKGND, 0, 0, 0, [&] {    \
        CDC dc{reinterpret_cast<HDC>(wparam)}; \
        return self.OnEraseBkgnd(&dc);         \
    }())
#define ON_WM_HSCROLL()            \
    AFX_ENTRY(WM_HSCROLL, 0, 0, 0, \
              (self.OnHScroll(LOWORD(wparam), HIWORD(wparam), CWnd::FromHandle(reinterpret_cast<HWND>(lparam))), 0))
#define AFX_MOUSE_ENTRY(message, handler) \
    AFX_ENTRY(message, 0, 0, 0, (self.handler(static_cast<UINT>(wparam), CPoint{lparam}), 0))
#define ON_WM_LBUTTONDOWN() AFX_MOUSE_ENTRY(WM_LBUTTONDOWN, OnLButtonDown)
#define ON_WM_LBUTTONUP() AFX_MOUSE_ENTRY(WM_LBUTTONUP, OnLButtonUp)
#define ON_WM_MOUSEMOVE() AFX_MOUSE_ENTRY(WM_MOUSEMOVE, OnMouseMove)
#define ON_WM_MOUSEWHEEL()            \
    AFX_ENTRY(WM_MOUSEWHEEL, 0, 0, 0, \
              self.OnMouseWheel(LOWORD(wparam), static_cast<short>(HIWORD(wparam)), CPoint{lparam}))
#define ON_WM_GETDLGCODE() AFX_ENTRY(WM_GETDLGCODE, 0, 0, 0, static_cast<LRESULT>(self.OnGetDlgCode()))
#define AFX_KEY_ENTRY(message, handler) \
    AFX_ENTRY(message, 0, 0, 0, (self.handler(static_cast<UINT>(wparam), LOWORD(lparam), HIWORD(lparam)), 0))
#define ON_WM_KEYDOWN() AFX_KEY_ENTRY(WM_KEYDOWN, OnKeyDown)
#define ON_WM_KEYUP() AFX_KEY_ENTRY(WM_KEYUP, OnKeyUp)
#define ON_WM_CHAR() AFX_KEY_ENTRY(WM_CHAR, OnChar)
#define ON_WM_SETFOCUS() \
    AFX_ENTRY(WM_SETFOCUS, 0, 0, 0, (self.OnSetFocus(CWnd::FromHandle(reinterpret_cast<HWND>(wparam))), 0))
#define ON_WM_KILLFOCUS() \
    AFX_ENTRY(WM_KILLFOCUS, 0, 0, 0, (self.OnKillFocus(CWnd::FromHandle(reinterpret_cast<HWND>(wparam))), 0))
#define ON_WM_CAPTURECHANGED() \
    AFX_ENTRY(WM_CAPTURECHANGED, 0, 0, 0, (self.OnCaptureChanged(CWnd::FromHandle(reinterpret_cast<HWND>(lparam))), 0))

// Notifications of controls. The handler of a range receives the id of the control.
#define ON_CONTROL(code, id, handler) AFX_ENTRY(WM_COMMAND, code, id, id, ((self.*handler)(), 0))
#define ON_BN_CLICKED(id, handler) ON_CONTROL(BN_CLICKED, id, handler)
#define ON_CBN_SELCHANGE(id, handler) ON_CONTROL(CBN_SELCHANGE, id, handler)
#define ON_CONTROL_RANGE(code, first, last, handler) \
    AFX_ENTRY(WM_COMMAND, code, first, last, ((self.*handler)(LOWORD(wparam)), 0))
#define ON_CONTROL_REFLECT(code, handler) AFX_ENTRY(WM_COMMAND + AFX_REFLECTED, code, 0, 0xffff, ((self.*handler)(), 0))
#define ON_NOTIFY_RANGE(code, first, last, handler)                          \
    AFX_ENTRY(WM_NOTIFY, code, first, last, [&] {                            \
        LRESULT answer = 0;                                                  \
        auto* const header = reinterpret_cast<NMHDR*>(lparam);               \
        (self.*handler)(static_cast<UINT>(header->idFrom), header, &answer); \
        return answer;                                                       \
    }())
