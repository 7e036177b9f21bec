#pragma once

#include <windows.h>

#include <exception>

#include "afx/object.h"

/// The one application object of this module. A derived class decides how exceptions are reported; without one they are
/// only sent to a debugger.
class CWinApp : public CObject
{
  public:
    CWinApp();
    ~CWinApp() override;

    /// One-time initialization before the first window is created. FALSE makes the start fail.
    virtual BOOL InitInstance() { return TRUE; }

    /// Called inside a catch block for an exception that left a message handler. Returns the result of the window
    /// procedure for `message`.
    virtual LRESULT ProcessWndProcException(std::exception_ptr error, UINT message);
};

/// For the catch blocks of callbacks: passes the current exception to the application object, if there is one, and
/// returns the result of the callback for `message`. Nothing unwinds through the system's frames.
LRESULT AfxProcessException(UINT message) noexcept;

/// The module that contains this code, program or library, with its dialog templates and bitmaps.
HINSTANCE AfxGetInstanceHandle();
inline HINSTANCE AfxGetResourceHandle() { return AfxGetInstanceHandle(); }
