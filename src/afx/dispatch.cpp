#include <utility>

#include "afx/app.h"
#include "afx/state.h"
#include "afx/wnd.h"

namespace {

/// Notes the message that is being handled, and lets passing objects go with the outermost one.
class handling
{
  public:
    handling(HWND window, UINT message, WPARAM wparam, LPARAM lparam) : former_{afx_state::get().message}
    {
        ++afx_state::get().depth;
        afx_state::get().message = {window, message, wparam, lparam, 0, {}};
    }
    ~handling()
    {
        afx_state& state = afx_state::get();
        state.message = former_;
        if (--state.depth == 0) {
            for (auto& [window, object] : state.passing) object->m_hWnd = nullptr;  // theirs it never was
            state.passing.clear();
        }
    }
    handling(const handling&) = delete;
    handling& operator=(const handling&) = delete;

  private:
    MSG former_;
};

LRESULT after_exception(HWND window, UINT message) noexcept
{
    if (message == WM_PAINT) ::ValidateRect(window, nullptr);  // or it would be asked to paint for ever
    if (CWinApp* const app = AfxGetApp()) return app->ProcessWndProcException(std::current_exception(), message);
    return message == WM_CREATE ? -1 : 0;
}

}  // namespace

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (!object) return ::DefWindowProc(window, message, wparam, lparam);
    const handling scope{window, message, wparam, lparam};
    LRESULT result;
    try {
        result = object->WindowProc(message, wparam, lparam);
    } catch (...) {
        result = after_exception(window, message);
    }
    if (message == WM_NCDESTROY) object->forget_window();
    return result;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_COMMAND) {
        if (OnCommand(wparam, lparam)) return 1;
    } else if (message == WM_NOTIFY) {
        LRESULT result = 0;
        if (OnNotify(wparam, lparam, &result)) return result;
    } else if (const AFX_MSGMAP_ENTRY* const entry = find_entry(message, 0, 0)) {
        return entry->invoke(this, wparam, lparam);
    }
    return DefWindowProc(message, wparam, lparam);
}

const AFX_MSGMAP_ENTRY* CWnd::find_entry(UINT message, UINT code, UINT id) const
{
    for (const AFX_MSGMAP* map = GetMessageMap(); map; map = map->base ? map->base() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* entry = map->entries; entry->invoke; ++entry) {
            if (entry->message == message && entry->code == code && id >= entry->first_id && id <= entry->last_id) {
                return entry;
            }
        }
    }
    return nullptr;
}

BOOL CWnd::OnCommand(WPARAM wparam, LPARAM lparam)
{
    const UINT id = LOWORD(wparam), code = HIWORD(wparam);
    if (lparam) {  // from a control
        if (afx_state::get().locked_out == m_hWnd) return TRUE;
        if (CWnd* const control = FromHandlePermanent(reinterpret_cast<HWND>(lparam))) {
            if (const auto* const own = control->find_entry(WM_COMMAND + AFX_REFLECTED, code, id)) {
                own->invoke(control, wparam, lparam);
                return TRUE;
            }
        }
    }
    const AFX_MSGMAP_ENTRY* const entry = find_entry(WM_COMMAND, code, id);
    if (!entry) return FALSE;
    entry->invoke(this, wparam, lparam);
    return TRUE;
}

BOOL CWnd::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (afx_state::get().locked_out == m_hWnd) return TRUE;
    const auto* const header = reinterpret_cast<const NMHDR*>(lparam);
    const auto* const entry = find_entry(WM_NOTIFY, header->code, static_cast<UINT>(header->idFrom));
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
