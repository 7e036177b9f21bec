#pragma once

#include <windows.h>

namespace qorv::panel {

enum class tab_key
{
    forwards,
    backwards  ///< with Shift
};

inline bool held(int key) { return ::GetKeyState(key) < 0; }

/// Whether a WM_GETDLGCODE asks who handles the Tab key in this direction. With Ctrl it is another key.
inline bool asks_for_tab(const MSG& query, tab_key direction)
{
    const auto* const pressed = reinterpret_cast<const MSG*>(query.lParam);
    return pressed && pressed->message == WM_KEYDOWN && pressed->wParam == VK_TAB && !held(VK_CONTROL) &&
           held(VK_SHIFT) == (direction == tab_key::backwards);
}

}  // namespace qorv::panel
