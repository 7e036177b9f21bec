#pragma once

#include <windows.h>

#include <string>

/// The system's clipboard, which all programs share.
namespace zentrix::host {

/// Replaces its contents by a text. A line feed is stored as the two characters that end a line on this system.
/// owner   the window on whose behalf the clipboard is opened
/// Throws  std::runtime_error "Another program uses the clipboard.", or "There is not enough memory for this text."
void copy_text(HWND owner, const std::string& text);

/// Its text, of which at most the first million characters are used.
/// Throws  std::runtime_error "Another program uses the clipboard.", or "The clipboard has no text."
std::string pasted_text(HWND owner);

}  // namespace zentrix::host
