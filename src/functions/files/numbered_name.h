#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qorv::functions {

/// True when `a` stands before `b` in the order in which a person counts: a run of digits compares by its value, of any
/// length and with any leading zeros ("img2" before "img10"); letters A to Z compare without regard to case; other
/// bytes by their code, so that UTF-8 text keeps its order of code points.
bool numbered_before(std::string_view a, std::string_view b);

/// Sorts by numbered_before. Names equal in that order ("img1" and "IMG01") stay in the order they came in.
void sort_numbered_names(std::vector<std::string>& names);

}  // namespace qorv::functions
