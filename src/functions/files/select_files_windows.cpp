#include "functions/files/select_files.h"

#include <windows.h>

#include <commdlg.h>  // needs the former

#include <algorithm>
#include <array>
#include <boost/nowide/convert.hpp>
#include <cstring>
#include <exception>

#include "image/element_type.h"

namespace qorv::platform {
namespace {

std::wstring wide(const std::string& utf8) { return boost::nowide::widen(utf8); }
std::string utf8(const std::wstring& text) { return boost::nowide::narrow(text); }

HWND window_titled(const std::string& title)
{
    const HWND titled = title.empty() ? nullptr : FindWindowW(nullptr, wide(title).c_str());
    return titled ? titled : GetActiveWindow();
}

/// The filter with null characters as separators, as the dialog expects it.
std::wstring dialog_filter(const std::string& filter)
{
    std::wstring text = wide(filter.find('|') != std::string::npos || filter.empty() ? filter : filter + "|" + filter);
    if (!text.empty() && text.back() != L'|') text += L'|';
    std::replace(text.begin(), text.end(), L'|', L'\0');
    return text + L'\0';
}

/// The paths in the dialog's answer: one whole path, or a folder followed by names, each null-terminated.
std::vector<std::string> paths_in(const std::wstring& answer)
{
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < answer.size() && answer[at] != L'\0'; at += wcslen(&answer[at]) + 1)
        parts.push_back(utf8(&answer[at]));
    if (parts.size() < 2) return parts;
    const std::string folder = parts.front().back() == '\\' ? parts.front() : parts.front() + "\\";
    parts.erase(parts.begin());
    for (std::string& name : parts) name.insert(0, folder);
    return parts;
}

/// A dialog template in memory. Items are aligned to 4 bytes; texts are null-terminated.
class dialog_template
{
  public:
    dialog_template(const wchar_t* title, WORD items, short width, short height)
    {
        put<DWORD>(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER | DS_SETFONT);
        put<DWORD>(0);
        put<WORD>(items);
        for (const short number : {short{0}, short{0}, width, height}) put(number);
        put<WORD>(0);  // no menu
        put<WORD>(0);  // standard dialog class
        put_text(title);
        put<WORD>(8);
        put_text(L"MS Shell Dlg");
    }

    enum : WORD
    {
        button = 0x80,
        edit = 0x81,
        label = 0x82,
        combo = 0x85,
    };
    void add(WORD control_class, DWORD style, std::array<short, 4> place, WORD id, const wchar_t* text)
    {
        while (bytes_.size() % 4 != 0) bytes_.push_back(0);
        put<DWORD>(WS_CHILD | WS_VISIBLE | style);
        put<DWORD>(0);
        for (const short number : place) put(number);
        put(id);
        put<WORD>(0xFFFF);
        put(control_class);
        put_text(text);
        put<WORD>(0);
    }
    const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(bytes_.data()); }

  private:
    template <class T>
    void put(T number)
    {
        const auto* from = reinterpret_cast<const unsigned char*>(&number);
        bytes_.insert(bytes_.end(), from, from + sizeof number);
    }
    void put_text(const wchar_t* text)
    {
        for (; *text != L'\0'; ++text) put(*text);
        put(L'\0');
    }
    std::vector<unsigned char> bytes_;
};

constexpr int width_id = 101, height_id = 102, type_id = 103;

void show(HWND dialog, const raw_format& format)
{
    SetDlgItemInt(dialog, width_id, static_cast<UINT>(format.width), FALSE);
    SetDlgItemInt(dialog, height_id, static_cast<UINT>(format.height), FALSE);
    for (int type = 0; type <= static_cast<int>(dm::element_type::complex128); ++type)
        SendDlgItemMessageW(dialog, type_id, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(wide(display_name(static_cast<dm::element_type>(type))).c_str()));
    SendDlgItemMessageW(dialog, type_id, CB_SETCURSEL, static_cast<WPARAM>(format.type), 0);
}

/// Reads the fields. Returns false, with the focus on the invalid field, when a size is not above 0.
bool read_fields(HWND dialog, raw_format& format)
{
    for (const auto& [id, number] : {std::pair{width_id, &format.width}, {height_id, &format.height}}) {
        *number = static_cast<std::int32_t>(GetDlgItemInt(dialog, id, nullptr, FALSE));
        if (*number > 0) continue;
        SetFocus(GetDlgItem(dialog, id));
        return false;
    }
    format.type = static_cast<std::int32_t>(SendDlgItemMessageW(dialog, type_id, CB_GETCURSEL, 0, 0));
    return true;
}

/// What the dialog asks for, and the exception that ended it, if any.
struct format_question
{
    raw_format format;
    std::exception_ptr failure;
};

format_question* question_of(HWND dialog)
{
    return reinterpret_cast<format_question*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

INT_PTR handle(HWND dialog, UINT message, WPARAM wp, LPARAM lp)
{
    switch (message) {
        case WM_INITDIALOG:
            SetWindowLongPtrW(dialog, DWLP_USER, lp);
            show(dialog, question_of(dialog)->format);
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wp) == IDCANCEL) EndDialog(dialog, IDCANCEL);
            if (LOWORD(wp) == IDOK && read_fields(dialog, question_of(dialog)->format)) EndDialog(dialog, IDOK);
            return TRUE;
        default: return FALSE;
    }
}

/// No exception may pass the system's frames: it ends the dialog and is thrown again by choose_raw_format.
INT_PTR CALLBACK format_proc(HWND dialog, UINT message, WPARAM wp, LPARAM lp) noexcept
try {
    return handle(dialog, message, wp, lp);
} catch (...) {
    if (format_question* question = question_of(dialog)) question->failure = std::current_exception();
    EndDialog(dialog, IDCANCEL);
    return TRUE;
}

dialog_template format_dialog()
{
    dialog_template dialog{L"Raw image files", 8, 168, 84};
    using d = dialog_template;
    dialog.add(d::label, 0, {8, 10, 44, 10}, 0xFFFF, L"Width");
    dialog.add(d::edit, WS_BORDER | WS_TABSTOP | ES_NUMBER, {56, 8, 104, 12}, width_id, L"");
    dialog.add(d::label, 0, {8, 26, 44, 10}, 0xFFFF, L"Height");
    dialog.add(d::edit, WS_BORDER | WS_TABSTOP | ES_NUMBER, {56, 24, 104, 12}, height_id, L"");
    dialog.add(d::label, 0, {8, 42, 44, 10}, 0xFFFF, L"Data type");
    dialog.add(d::combo, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, {56, 40, 104, 120}, type_id, L"");
    dialog.add(d::button, WS_TABSTOP | BS_DEFPUSHBUTTON, {56, 62, 50, 14}, IDOK, L"OK");
    dialog.add(d::button, WS_TABSTOP | BS_PUSHBUTTON, {110, 62, 50, 14}, IDCANCEL, L"Cancel");
    return dialog;
}

}  // namespace

std::vector<std::string> choose_files(const std::string& start, const std::string& filter, const std::string& owner)
{
    std::wstring answer(1 << 16, L'\0');  // room for some thousand names
    const std::wstring begin = wide(start), filters = dialog_filter(filter);
    const DWORD attributes = begin.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(begin.c_str());
    const bool is_folder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!is_folder && begin.size() < answer.size()) std::copy(begin.begin(), begin.end(), answer.begin());

    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = window_titled(owner);
    dialog.lpstrFilter = filter.empty() ? nullptr : filters.c_str();
    dialog.lpstrInitialDir = is_folder ? begin.c_str() : nullptr;
    dialog.lpstrFile = answer.data();
    dialog.nMaxFile = static_cast<DWORD>(answer.size());
    dialog.Flags = OFN_ALLOWMULTISELECT | OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameW(&dialog)) return {};
    return paths_in(answer);
}

bool choose_raw_format(raw_format& format, const std::string& owner)
{
    static raw_format last{512, 512, static_cast<std::int32_t>(dm::element_type::float32)};
    format_question question{
        {format.width > 0 ? format.width : last.width, format.height > 0 ? format.height : last.height,
         format.type >= 0 && format.type <= 9 ? format.type : last.type},
        nullptr};
    const dialog_template dialog = format_dialog();
    const auto answer = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), dialog.get(), window_titled(owner),
                                                format_proc, reinterpret_cast<LPARAM>(&question));
    if (question.failure) std::rethrow_exception(question.failure);
    if (answer != IDOK) return false;
    format = last = question.format;
    return true;
}

}  // namespace qorv::platform
