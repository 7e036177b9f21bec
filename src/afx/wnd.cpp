#include "afx/wnd.h"

#include <utility>

#include "afx/app.h"
#include "afx/data_exchange.h"
#include "afx/state.h"

IMPLEMENT_DYNAMIC(CWnd, CObject)

afx_state& afx_state::get()
{
    static afx_state state;
    return state;
}

CWnd* CWnd::FromHandlePermanent(HWND window)
{
    const auto& windows = afx_state::get().windows;
    const auto found = windows.find(window);
    return found == windows.end() ? nullptr : found->second;
}

CWnd* CWnd::FromHandle(HWND window)
{
    if (!window) return nullptr;
    if (CWnd* const own = FromHandlePermanent(window)) return own;
    auto& object = afx_state::get().passing[window];
    if (!object) object = std::make_unique<CWnd>();
    object->m_hWnd = window;
    return object.get();
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
    m_hWnd = window;
    afx_state::get().windows[window] = this;
    PreSubclassWindow();
    former_ =
        reinterpret_cast<WNDPROC>(::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc)));
}

void CWnd::forget_window()
{
    const HWND window = std::exchange(m_hWnd, nullptr);
    const WNDPROC former = std::exchange(former_, nullptr);
    afx_state::get().windows.erase(window);
    if (former) ::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former));
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
    struct lock_out
    {
        HWND& locked = afx_state::get().locked_out;
        HWND former = locked;
        ~lock_out() { locked = former; }
    } const guard;
    guard.locked = m_hWnd;
    CDataExchange exchange{this, save_and_validate};
    try {
        DoDataExchange(&exchange);
    } catch (const CUserException&) {
        return FALSE;
    }
    return TRUE;
}

LRESULT CWnd::Default()
{
    const MSG& message = afx_state::get().message;
    return DefWindowProc(message.message, message.wParam, message.lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    return former_ ? ::CallWindowProc(former_, m_hWnd, message, wparam, lparam)
                   : ::DefWindowProc(m_hWnd, message, wparam, lparam);
}

AfxHookWindowCreate::AfxHookWindowCreate(CWnd* window)
    : former_pending_{std::exchange(afx_state::get().pending, window)}
{
    const auto on_create = [](int code, WPARAM wparam, LPARAM lparam) noexcept -> LRESULT {
        const auto created = reinterpret_cast<HWND>(wparam);
        TCHAR class_name[8] = {};
        // The thread's first window brings an input-method window of the system with it.
        if (code == HCBT_CREATEWND && ::GetClassName(created, class_name, 8) &&
            ::lstrcmpi(class_name, TEXT("IME")) != 0) {
            CWnd* const owner = std::exchange(afx_state::get().pending, nullptr);
            try {
                if (owner && !owner->m_hWnd) owner->take_over(created);
            } catch (...) {
                if (CWinApp* const app = AfxGetApp()) app->ProcessWndProcException(std::current_exception(), WM_CREATE);
                return 1;  // no window then
            }
        }
        return ::CallNextHookEx(nullptr, code, wparam, lparam);
    };
    hook_ = ::SetWindowsHookEx(WH_CBT, on_create, nullptr, ::GetCurrentThreadId());
}

AfxHookWindowCreate::~AfxHookWindowCreate()
{
    ::UnhookWindowsHookEx(hook_);
    afx_state::get().pending = former_pending_;
}
