#pragma once

#ifdef _WIN32
#include "afx/app.h"
#else
/// Base of the application object on platforms without windows.
class CWinApp
{
  public:
    virtual ~CWinApp() = default;
    virtual int InitInstance() { return 1; }
};
#endif

/// The library's application object. InitInstance stores the module handle, see module.h.
class CZXApp : public CWinApp
{
  public:
    int InitInstance() override;
#ifdef _WIN32
    /// Reports an exception of a panel's message handler to the host's error manager.
    LRESULT ProcessWndProcException(std::exception_ptr error, UINT message) override;
#endif
};
