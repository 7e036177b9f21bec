#include "host/program/help/near_word.h"

#include <algorithm>

namespace zentrix::program {

namespace {

std::string in_lower_case(std::string word)
{
    for (char& c : word)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return word;
}

/// Letters to change, add, leave out or swap with the next one (optimal string alignment).
std::size_t edits(const std::string& from, const std::string& to)
{
    std::vector<std::vector<std::size_t>> cost(from.size() + 1, std::vector<std::size_t>(to.size() + 1));
    for (std::size_t i = 0; i <= from.size(); ++i)
        for (std::size_t j = 0; j <= to.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const bool same = from[i - 1] == to[j - 1];
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    return cost[from.size()][to.size()];
}

}  // namespace

std::string nearest_word(const std::string& word, const std::vector<std::string>& known)
{
    constexpr std::size_t longest = 64;  // nobody misspells a longer word, and edits() takes the square of it
    std::string nearest;
    if (word.size() > longest) return nearest;
    std::size_t least = word.size() / 3 + 1;
    for (const std::string& candidate : known) {
        if (candidate.size() > longest) continue;
        const std::size_t needed = edits(in_lower_case(word), in_lower_case(candidate));
        if (needed >= least) continue;
        least = needed;
        nearest = candidate;
    }
    return nearest;
}

bool differ_by_case_only(const std::string& a, const std::string& b) { return in_lower_case(a) == in_lower_case(b); }

std::string did_you_mean(const std::string& word) { return word.empty() ? "" : ". Did you mean " + word + "?"; }

}  // namespace zentrix::program
