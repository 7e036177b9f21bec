#include "afx/wnd.h"

#include <map>
#include <memory>
#include <utility>

#include "afx/app.h"
#include "afx/data_exchange.h"

namespace {

/// The windows of the user-interface thread. No other thread uses it.
struct window_state
{
    std::map<HWND, CWnd*> windows;
    std::map<HWND, std::unique_ptr<CWnd>> temporary_windows;  ///< wrappers of windows without an object of their own
    int depth = 0;                                            ///< nesting of window procedures
    MSG message{};                                            ///< being handled
    HWND muted = nullptr;     ///< notifications of its controls are dropped (UpdateData)
    CWnd* pending = nullptr;  ///< takes over the next window that is created
};

window_state& state()
{
    static window_state the_state;
    return the_state;
}

/// Records the message being handled. Frees temporary CWnd wrappers when the outermost message returns.
class message_scope
{
  public:
    message_scope(HWND window, UINT message, WPARAM wparam, LPARAM lparam) : previous_{state().message}
    {
        ++state().depth;
        state().message = {window, message, wparam, lparam, 0, {}};
    }
    ~message_scope()
    {
        state().message = previous_;
        if (--state().depth != 0) return;
        for (auto& [window, wrapper] : state().temporary_windows)
            wrapper->m_hWnd = nullptr;  // it does not own the window
        state().temporary_windows.clear();
    }
    message_scope(const message_scope&) = delete;
    message_scope& operator=(const message_scope&) = delete;

  private:
    MSG previous_;
};

}  // namespace

CWnd* CWnd::FromHandlePermanent(HWND window)
{
    const auto found = state().windows.find(window);
    return found == state().windows.end() ? nullptr : found->second;
}

CWnd* CWnd::FromHandle(HWND window)
{
    if (!window) return nullptr;
    if (CWnd* const own = FromHandlePermanent(window)) return own;
    auto& wrappers = state().temporary_windows;
    auto known = wrappers.find(window);
    if (known == wrappers.end()) known = wrappers.emplace(window, std::make_unique<CWnd>()).first;
    known->second->m_hWnd = window;  // only now: a wrapper that is not kept would destroy the window
    return known->second.get();
}

BOOL CWnd::CreateEx(DWORD extended_style, LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& place,
                    CWnd* parent, UINT id)
{
    CREATESTRUCT create{};
    create.dwExStyle = extended_style;
    create.lpszClass = class_name;
    create.lpszName = title;
    create.style = static_cast<LONG>(style);
    create.x = place.left;
    create.y = place.top;
    create.cx = place.right - place.left;
    create.cy = place.bottom - place.top;
    create.hwndParent = parent ? parent->m_hWnd : nullptr;
    create.hMenu = reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id));
    create.hInstance = AfxGetInstanceHandle();
    if (!PreCreateWindow(create)) return FALSE;
    const AfxHookWindowCreate hook{this};
    return ::CreateWindowEx(create.dwExStyle, create.lpszClass, create.lpszName, static_cast<DWORD>(create.style),
                            create.x, create.y, create.cx, create.cy, create.hwndParent, create.hMenu, create.hInstance,
                            nullptr) != nullptr;
}

BOOL CWnd::SubclassWindow(HWND window)
{
    if (!window || m_hWnd || FromHandlePermanent(window)) return FALSE;
    take_over(window);
    return TRUE;
}

void CWnd::take_over(HWND window)
{
    state().windows[window] = this;
    m_hWnd = window;
    try {
        PreSubclassWindow();
    } catch (...) {
        m_hWnd = nullptr;
        state().windows.erase(window);
        throw;
    }
    previous_ =
        reinterpret_cast<WNDPROC>(::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc)));
}

void CWnd::detach()
{
    const HWND window = std::exchange(m_hWnd, nullptr);
    const WNDPROC previous = std::exchange(previous_, nullptr);
    state().windows.erase(window);
    if (previous) ::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
    PostNcDestroy();
}

BOOL CWnd::DestroyWindow() { return m_hWnd && ::DestroyWindow(m_hWnd); }

void CWnd::MoveWindow(const RECT* place, BOOL repaint)
{
    ::MoveWindow(m_hWnd, place->left, place->top, place->right - place->left, place->bottom - place->top, repaint);
}

BOOL CWnd::SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags)
{
    return ::SetWindowPos(m_hWnd, after ? after->m_hWnd : nullptr, x, y, width, height, flags);
}

BOOL CWnd::UpdateData(BOOL save_and_validate)
{
    if (!m_hWnd) return FALSE;
    struct mute
    {
        explicit mute(HWND window) : previous{std::exchange(state().muted, window)} {}
        ~mute() { state().muted = previous; }
        HWND previous;
    } const notifications{m_hWnd};
    CDataExchange exchange{this, save_and_validate};
    try {
        DoDataExchange(&exchange);
    } catch (const CUserException&) {
        return FALSE;
    }
    return TRUE;
}

const MSG& CWnd::GetCurrentMessage() { return state().message; }

LRESULT CWnd::Default()
{
    const MSG& message = state().message;
    return DefWindowProc(message.message, message.wParam, message.lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    return previous_ ? ::CallWindowProc(previous_, m_hWnd, message, wparam, lparam)
                     : ::DefWindowProc(m_hWnd, message, wparam, lparam);
}

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (!object) return ::DefWindowProc(window, message, wparam, lparam);
    const message_scope scope{window, message, wparam, lparam};
    LRESULT result;
    try {
        result = object->WindowProc(message, wparam, lparam);
    } catch (...) {
        if (message == WM_PAINT) ::ValidateRect(window, nullptr);  // otherwise WM_PAINT is sent again without end
        result = AfxProcessException(message);
    }
    if (message == WM_NCDESTROY) object->detach();
    return result;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_COMMAND) {
        if (OnCommand(wparam, lparam)) return 1;
    } else if (message == WM_NOTIFY) {
        LRESULT result = 0;
        if (OnNotify(wparam, lparam, &result)) return result;
    } else if (const auto* const entry = AfxFindMessageEntry(GetMessageMap(), message, 0, 0)) {
        return entry->invoke(this, wparam, lparam);
    }
    return DefWindowProc(message, wparam, lparam);
}

BOOL CWnd::OnCommand(WPARAM wparam, LPARAM lparam)
{
    const UINT id = LOWORD(wparam), code = HIWORD(wparam);
    if (lparam) {  // from a control
        if (state().muted == m_hWnd) return TRUE;
        if (CWnd* const control = FromHandlePermanent(reinterpret_cast<HWND>(lparam))) {
            if (const auto* const own =
                    AfxFindMessageEntry(control->GetMessageMap(), WM_COMMAND + AFX_REFLECTED, code, id)) {
                own->invoke(control, wparam, lparam);
                return TRUE;
            }
        }
    }
    const auto* const entry = AfxFindMessageEntry(GetMessageMap(), WM_COMMAND, code, id);
    if (!entry) return FALSE;
    entry->invoke(this, wparam, lparam);
    return TRUE;
}

BOOL CWnd::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (state().muted == m_hWnd) return TRUE;
    const auto* const header = reinterpret_cast<const NMHDR*>(lparam);
    const auto* const entry =
        AfxFindMessageEntry(GetMessageMap(), WM_NOTIFY, header->code, static_cast<UINT>(header->idFrom));
    if (!entry) return FALSE;
    *result = entry->invoke(this, wparam, lparam);
    return TRUE;
}

const AFX_MSGMAP* CWnd::GetThisMessageMap()
{
    static constexpr AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, nullptr}};
    static constexpr AFX_MSGMAP map{nullptr, entries};
    return &map;
}

LRESULT CALLBACK AfxHookWindowCreate::on_create(int code, WPARAM wparam, LPARAM lparam) noexcept
{
    const auto created = reinterpret_cast<HWND>(wparam);
    TCHAR class_name[8] = {};
    // The system creates an input-method window together with the thread's first window.
    if (code == HCBT_CREATEWND && ::GetClassName(created, class_name, 8) && ::lstrcmpi(class_name, TEXT("IME")) != 0) {
        CWnd* const owner = std::exchange(state().pending, nullptr);
        try {
            if (owner && !owner->m_hWnd) owner->take_over(created);
        } catch (...) {
            AfxProcessException(WM_CREATE);
            return 1;  // refuses the window
        }
    }
    return ::CallNextHookEx(nullptr, code, wparam, lparam);
}

AfxHookWindowCreate::AfxHookWindowCreate(CWnd* window)
    : previous_{std::exchange(state().pending, window)},
      hook_{::SetWindowsHookEx(WH_CBT, &on_create, nullptr, ::GetCurrentThreadId())}
{}

AfxHookWindowCreate::~AfxHookWindowCreate() { state().pending = previous_; }
