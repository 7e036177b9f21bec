#include "host/windows/clipboard.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "host/text/encoding.h"

namespace zentrix::host {

namespace {

constexpr std::size_t most_characters = 1'000'000;

/// The opened clipboard.
class open_clipboard
{
  public:
    explicit open_clipboard(HWND owner)
    {
        constexpr int attempts = 10;  // other programs open it for a moment at each change
        for (int i = 0; i < attempts; ++i) {
            if (OpenClipboard(owner)) return;
            Sleep(10);
        }
        throw std::runtime_error{"Another program uses the clipboard."};
    }
    ~open_clipboard() { CloseClipboard(); }
    open_clipboard(const open_clipboard&) = delete;
    open_clipboard& operator=(const open_clipboard&) = delete;
};

std::wstring with_line_ends(const std::wstring& text)
{
    std::wstring result;
    for (const wchar_t letter : text) {
        if (letter == L'\n') result += L'\r';
        result += letter;
    }
    return result;
}

}  // namespace

void copy_text(HWND owner, const std::string& text)
{
    const std::wstring stored = with_line_ends(widen(text));
    const std::size_t bytes = (stored.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    void* const characters = memory ? GlobalLock(memory) : nullptr;
    if (!characters) throw std::runtime_error{"There is not enough memory for this text."};
    std::memcpy(characters, stored.c_str(), bytes);
    GlobalUnlock(memory);
    try {
        const open_clipboard opened{owner};
        EmptyClipboard();
        if (SetClipboardData(CF_UNICODETEXT, memory)) return;  // which owns the memory then
    } catch (...) {
        GlobalFree(memory);
        throw;
    }
    GlobalFree(memory);
    throw std::runtime_error{"Another program uses the clipboard."};
}

std::string pasted_text(HWND owner)
{
    const open_clipboard opened{owner};
    const HGLOBAL memory = GetClipboardData(CF_UNICODETEXT);
    const auto* const characters = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : nullptr;
    if (!characters) throw std::runtime_error{"The clipboard has no text."};
    const std::size_t stored = std::min(GlobalSize(memory) / sizeof(wchar_t), most_characters);
    std::wstring text{characters, std::find(characters, characters + stored, L'\0')};
    GlobalUnlock(memory);
    std::erase(text, L'\r');
    return narrow(text);
}

}  // namespace zentrix::host
