#pragma once

#ifdef _WIN32
#include "afx/app.h"
#else
/// Where there are no windows, the application object is only what starts.
class CWinApp
{
  public:
    virtual ~CWinApp() = default;
    virtual int InitInstance() { return 1; }
};
#endif

/// The library's application object. Its start stores the module's handle, which the rest of the program asks for.
class CZXApp : public CWinApp
{
  public:
    int InitInstance() override;
#ifdef _WIN32
    /// What the panel's message handlers throw goes to the host's error manager.
    LRESULT ProcessWndProcException(std::exception_ptr error, UINT message) override;
#endif
};
