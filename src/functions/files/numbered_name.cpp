#include "functions/files/numbered_name.h"

#include <algorithm>
#include <cstddef>

namespace qorv::functions {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

unsigned char folded(char c) { return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); }

/// Removes the leading run of digits and returns it without its leading zeros.
std::string_view take_number(std::string_view& text)
{
    std::size_t length = 0;
    while (length < text.size() && is_digit(text[length])) ++length;
    std::string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    while (!digits.empty() && digits.front() == '0') digits.remove_prefix(1);
    return digits;
}

/// Negative, zero or positive.
int compare_numbers(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;  // the longer number is greater
    return a.compare(b);
}

}  // namespace

bool numbered_before(std::string_view a, std::string_view b)
{
    while (!a.empty() && !b.empty()) {
        if (is_digit(a.front()) && is_digit(b.front())) {
            const auto first = take_number(a), second = take_number(b);
            if (const int order = compare_numbers(first, second); order != 0) return order < 0;
            continue;
        }
        if (folded(a.front()) != folded(b.front())) return folded(a.front()) < folded(b.front());
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return a.empty() && !b.empty();
}

void sort_numbered_names(std::vector<std::string>& names)
{
    std::stable_sort(names.begin(), names.end(), numbered_before);
}

}  // namespace qorv::functions
