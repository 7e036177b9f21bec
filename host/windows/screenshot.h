#pragma once

#include <windows.h>

#include "host/files/png.h"

namespace zentrix::host {

/// The contents of a window's client area, children included. Windows in front of it are not included.
picture picture_of_client(HWND window);
/// The part of the screen inside the smallest rectangle that contains these windows with their frames.
picture picture_of_screen(std::initializer_list<HWND> windows);

}  // namespace zentrix::host
