#pragma once

#include <windows.h>

namespace zentrix::host {

/// The number of pixels that a length has on this screen. length  pixels at 96 dots per inch
int screen_pixels(int length);

/// Moves a window, without resizing it, so that its upper left corner is at `corner`, or as near to it as the work area
/// of that monitor allows. A window larger than the work area starts at the area's upper left corner.
void place_on_screen(HWND window, POINT corner);
/// The same, to the right of another window.
void place_next_to(HWND window, HWND other);

}  // namespace zentrix::host
