#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "host/estimation/estimate.h"
#include "host/windows/running_estimate.h"
#include "host/windows/tool_tips.h"
#include "win32/handles.h"

namespace zentrix::host {

/// What the dialog needs from its owner. It calls these functions on the thread that has made it.
struct estimate_listener
{
    /// What makes the wave, for running_estimate, and the optics at which the search starts.
    std::function<std::pair<wave_maker, lens::optics>()> begin;
    std::function<void(const lens::aberrations&)> preview;  ///< the best coefficients so far, while the search runs
    std::function<void(const estimate&)> finished;          ///< the search has ended by itself
    std::function<void()> given_up;                         ///< it was stopped, or failed
};

/// A modeless dialog in which the user ticks the coefficients to search, starts the search and may stop it. The search
/// runs on another thread. The dialog shows its progress, then its result, coefficient by coefficient.
class estimate_dialog
{
  public:
    /// Creates the dialog, hidden.
    /// owner    the window in front of which the dialog stays
    /// next_to  the window to the right of which it is placed
    /// Throws  script_error when the system creates no window
    estimate_dialog(HWND owner, HWND next_to, estimate_listener listener);
    /// Stops a running search without a call of the listener.
    ~estimate_dialog();
    estimate_dialog(const estimate_dialog&) = delete;
    estimate_dialog& operator=(const estimate_dialog&) = delete;

    HWND handle() const noexcept { return dialog_.get(); }
    /// Shows the dialog and gives it the focus. A running search continues.
    void show();
    /// Stops a running search, whose result is not used; the listener's given_up follows.
    void stop() noexcept;
    /// Offers a message to the dialog, as floating_frame::handles.
    bool handles(MSG& message) const { return IsDialogMessageW(handle(), &message) != 0; }

  private:
    static INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    void command(int id);
    void start();
    void poll();
    void finish();
    estimate_options chosen() const;
    void say(const std::string& text);
    void show_progress(double fraction);
    void enable(bool searching);
    void explain_controls();

    estimate_listener listener_;
    std::unique_ptr<running_estimate> running_;
    win32::unique_window dialog_;
    std::optional<tool_tips> tips_;
};

}  // namespace zentrix::host
