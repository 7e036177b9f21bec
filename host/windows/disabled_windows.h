#pragma once

#include <windows.h>

#include <vector>

namespace zentrix::host {

/// Disables all visible top-level windows of this thread, so that only a dialog that is shown meanwhile has keyboard
/// and mouse. At its end the same windows are enabled, and the one that was active before is active again.
class disabled_windows
{
  public:
    disabled_windows();
    ~disabled_windows();
    disabled_windows(const disabled_windows&) = delete;
    disabled_windows& operator=(const disabled_windows&) = delete;

  private:
    HWND active_ = GetActiveWindow();
    std::vector<HWND> windows_;
};

}  // namespace zentrix::host
