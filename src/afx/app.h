#pragma once

#include <windows.h>

#include <exception>

#include "afx/object.h"

/// The one application object of this module. A derived one says what becomes of exceptions; without one they are
/// shown to a debugger only.
class CWinApp : public CObject
{
  public:
    CWinApp();
    ~CWinApp() override;

    /// What there is to do once, before the first window. FALSE refuses.
    virtual BOOL InitInstance() { return TRUE; }

    /// Called inside a catch block for an exception that left a message handler. Returns what the window procedure
    /// answers to `message`.
    virtual LRESULT ProcessWndProcException(std::exception_ptr error, UINT message);
};

/// Null while there is no application object.
CWinApp* AfxGetApp();

/// The file that this code is linked into, program or library: its templates and bitmaps are found there.
HINSTANCE AfxGetInstanceHandle();
inline HINSTANCE AfxGetResourceHandle() { return AfxGetInstanceHandle(); }
