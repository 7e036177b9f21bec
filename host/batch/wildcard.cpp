#include "host/batch/wildcard.h"

namespace zentrix::host {

namespace {

/// Bytes of the UTF-8 character at the start of a text that is not empty.
std::size_t length_of_character(std::string_view text)
{
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) ++length;
    return length;
}

/// The length of the set "[...]" at the start of a pattern; 0 if it does not end. "]" is in the set if it is first.
std::size_t length_of_set(std::string_view pattern)
{
    const std::size_t first = pattern.size() > 1 && pattern[1] == '!' ? 2 : 1;
    const std::size_t end = pattern.find(']', first + 1);
    return end == std::string_view::npos ? 0 : end + 1;
}

bool is_in_set(std::string_view set, char letter)
{
    set = set.substr(1, set.size() - 2);
    const bool excludes = set.front() == '!' && set.size() > 1;
    if (excludes) set.remove_prefix(1);
    bool found = false;
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (i + 2 < set.size() && set[i + 1] == '-') {
            found = found || (set[i] <= letter && letter <= set[i + 2]);
            i += 2;
        } else
            found = found || set[i] == letter;
    }
    return found != excludes;
}

/// One element of the pattern other than *, and what it takes of a name.
struct step
{
    std::size_t pattern = 0, name = 0;  ///< lengths; 0: does not fit
};

step first_step(std::string_view pattern, std::string_view name)
{
    if (pattern.empty() || name.empty()) return {};
    if (pattern[0] == '?') return {1, length_of_character(name)};
    if (const std::size_t set = pattern[0] == '[' ? length_of_set(pattern) : 0; set > 0)
        return is_in_set(pattern.substr(0, set), name[0]) ? step{set, 1} : step{};
    return pattern[0] == name[0] ? step{1, 1} : step{};
}

}  // namespace

bool has_wildcard(std::string_view text) { return text.find_first_of("*?[") != std::string_view::npos; }

bool fits_wildcard(std::string_view pattern, std::string_view name)
{
    if (name.starts_with('.') && !pattern.starts_with('.')) return false;
    // After a mismatch the last * takes one more byte; earlier ones need not change.
    bool has_star = false;
    std::string_view after_star, rest_at_star;
    while (!name.empty() || !pattern.empty()) {
        if (pattern.starts_with('*')) {
            pattern.remove_prefix(1);
            has_star = true;
            after_star = pattern;
            rest_at_star = name;
        } else if (const step taken = first_step(pattern, name); taken.pattern > 0) {
            pattern.remove_prefix(taken.pattern);
            name.remove_prefix(taken.name);
        } else {
            if (!has_star || rest_at_star.empty()) return false;
            rest_at_star.remove_prefix(1);
            pattern = after_star;
            name = rest_at_star;
        }
    }
    return true;
}

}  // namespace zentrix::host
