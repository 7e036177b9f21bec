#pragma once

#include <windows.h>

#include "host/files/png.h"

namespace zentrix::host {

/// What a window's client area shows, its children included; other windows in front of it do not matter.
picture picture_of_client(HWND window);
/// What the screen shows of the smallest rectangle around these windows, frames included.
picture picture_of_screen(std::initializer_list<HWND> windows);

}  // namespace zentrix::host
