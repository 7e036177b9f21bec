#pragma once

#include <string>
#include <vector>

namespace zentrix::program {

/// The word of `known` that `word` most likely misspells: with the fewest letters changed, added, left out or swapped,
/// at most one for each three letters. Upper and lower case are the same. Empty if none is near.
std::string nearest_word(const std::string& word, const std::vector<std::string>& known);

/// Upper and lower case are the same (of ASCII).
bool differ_by_case_only(const std::string& a, const std::string& b);

/// ". Did you mean WORD?" or nothing for an empty word.
std::string did_you_mean(const std::string& word);

}  // namespace zentrix::program
