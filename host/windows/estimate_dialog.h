#pragma once

#include <windows.h>

#include <functional>

#include "host/estimation/estimate.h"

namespace zentrix::host {

/// What the dialog tells its owner, on the thread that shows it.
struct estimate_listener
{
    std::function<void(const lens::aberrations&)> preview;  ///< the best coefficients so far, while the search runs
    std::function<void(const estimate&)> finished;          ///< the search has ended by itself
    std::function<void()> given_up;                         ///< it was stopped, or failed
};

/// Shows a dialog in which the user ticks the coefficients to search, starts the search and may stop it. The search
/// runs on another thread; the windows stay usable. The dialog shows its progress and then its result, coefficient by
/// coefficient. It can be started again. Returns when the user closes the dialog, which stops a running search.
/// owner  the window that is disabled while the dialog is open
/// wave   as for estimate_aberrations; not changed
/// setup  gives the optics for each search
void show_estimate_dialog(HWND owner, const image_ref& wave, const std::function<lens::optics()>& setup,
                          const estimate_listener& listener);

}  // namespace zentrix::host
