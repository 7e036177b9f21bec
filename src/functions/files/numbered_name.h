#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qorv::functions {

/// Whether `a` precedes `b` in natural order: runs of digits are compared by value, whatever their length and leading
/// zeros ("img2" before "img10"); the case of the letters A to Z is ignored; other bytes are compared by value, which
/// keeps UTF-8 text in the order of its code points.
bool numbered_before(std::string_view a, std::string_view b);

/// Sorts by numbered_before. The sort is stable for names that are equal in that order ("img1" and "IMG01").
void sort_numbered_names(std::vector<std::string>& names);

}  // namespace qorv::functions
