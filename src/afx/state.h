#pragma once

#include <windows.h>

#include <map>
#include <memory>

class CWnd;

/// What the classes share about the windows of the user-interface thread; no other thread touches them.
struct afx_state
{
    std::map<HWND, CWnd*> windows;
    std::map<HWND, std::unique_ptr<CWnd>> passing;  ///< objects for windows that have none of their own
    int depth = 0;                                  ///< of window procedures inside each other
    MSG message{};                                  ///< the one that is being handled
    HWND locked_out = nullptr;                      ///< its controls' notifications are dropped (UpdateData)
    CWnd* pending = nullptr;                        ///< takes over the next window

    static afx_state& get();
};
