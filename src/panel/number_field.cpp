#include "panel/number_field.h"

#include <string>

namespace qorv::panel {

namespace {

std::string text_in(HWND edit)
{
    constexpr wchar_t minus_sign = 0x2212;  // in numbers copied from publications
    std::wstring wide(static_cast<std::size_t>(::GetWindowTextLengthW(edit)) + 1, L'\0');
    wide.resize(static_cast<std::size_t>(::GetWindowTextW(edit, wide.data(), static_cast<int>(wide.size()))));
    std::string text;
    for (const wchar_t c : wide) {
        if (c == minus_sign)
            text += '-';
        else
            text += c < 0x80 ? static_cast<char>(c) : '?';  // no other character belongs to a number
    }
    return text;
}

}  // namespace

void number_field::enter() { before_ = typed_ = value_; }

bool number_field::take_typed(HWND edit)
{
    if (typed_ != value_ || ::GetFocus() != edit) before_ = value_;
    const std::string shown = text_in(edit);
    const typed_number typed = read_number(shown);
    mark(edit, typed.state == number_state::wrong);
    const float former = value_;
    if (typed.state != number_state::complete)
        value_ = before_;
    else if (shown != text_of(value_))
        value_ = typed.value;
    typed_ = value_;
    return typed.state == number_state::complete || value_ != former;
}

void number_field::refuse(HWND edit)
{
    value_ = typed_ = before_;
    mark(edit, true);
}

bool number_field::has_number(HWND edit) const
{
    return !wrong_ && read_number(text_in(edit)).state == number_state::complete;
}

void number_field::exchange(CDataExchange* exchange)
{
    const HWND edit = exchange->PrepareCtrl(static_cast<int>(id_));
    const std::string shown = text_in(edit);
    if (shown == text_of(value_)) return;
    const typed_number typed = read_number(shown);
    const bool complete = !wrong_ && typed.state == number_state::complete;
    if (exchange->m_bSaveAndValidate) {
        if (complete) value_ = typed.value;
    } else if (!complete || typed.value != value_) {
        ::SetWindowTextA(edit, text_of(value_).c_str());
        mark(edit, false);
    }
}

void number_field::mark(HWND edit, bool wrong)
{
    if (wrong == wrong_) return;
    wrong_ = wrong;
    ::InvalidateRect(edit, nullptr, TRUE);
}

}  // namespace qorv::panel
