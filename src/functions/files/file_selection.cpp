#include "functions/files/file_selection.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "functions/files/numbered_name.h"

namespace qorv::functions {
namespace {

namespace fs = std::filesystem;

fs::path from_utf8(std::string_view text) { return std::u8string{text.begin(), text.end()}; }
std::string to_utf8(const fs::path& path)
{
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::vector<std::string> split(std::string_view text, std::string_view separators)
{
    std::vector<std::string> items;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of(separators), text.size());
        if (end > 0) items.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return items;
}

std::size_t folder_length(std::string_view path)
{
#ifdef _WIN32
    const auto separator = path.find_last_of("\\/");
#else
    const auto separator = path.find_last_of('/');
#endif
    return separator == std::string_view::npos ? 0 : separator + 1;
}

void add_files_of(const fs::path& folder, const std::vector<std::string>& patterns, std::vector<std::string>& files)
{
    std::error_code error;
    for (const auto& entry : fs::directory_iterator{folder, error}) {
        const std::string name = to_utf8(entry.path().filename());
        const bool is_match = std::any_of(patterns.begin(), patterns.end(), [&](auto& p) { return matches(p, name); });
        if (is_match && entry.is_regular_file(error)) files.push_back(to_utf8(entry.path()));
    }
}

}  // namespace

std::vector<std::string> patterns_of(std::string_view filter)
{
    const auto first_bar = filter.find('|');
    std::string_view patterns = filter;
    if (first_bar != std::string_view::npos) {
        patterns = filter.substr(first_bar + 1);
        patterns = patterns.substr(0, patterns.find('|'));
    }
    auto items = split(patterns, ";");
    if (items.empty()) return {"*"};
    std::replace(items.begin(), items.end(), std::string{"*.*"}, std::string{"*"});
    return items;
}

bool matches(std::string_view pattern, std::string_view name)
{
    // After a mismatch only the last star has to match more bytes; any match of the earlier ones is as good as another.
    // Without backtracking to them the time is at most proportional to the product of the lengths.
    std::size_t p = 0, n = 0, after_star = pattern.npos, star_end = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            after_star = ++p;
            star_end = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || folded(pattern[p]) == folded(name[n]))) {
            ++p, ++n;
        } else if (after_star != pattern.npos) {
            p = after_star;
            n = ++star_end;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == pattern.npos;
}

bool lists_files(std::string_view text) { return text.find_first_of("*?;\r\n") != std::string_view::npos; }

std::vector<std::string> expanded(std::string_view text, std::string_view filter)
{
    std::vector<std::string> files;
    for (const std::string& item : split(text, ";\r\n")) {
        std::error_code error;
        const std::size_t folder = folder_length(item);
        if (item.find_first_of("*?", folder) != std::string::npos)
            add_files_of(folder == 0 ? fs::path{"."} : from_utf8(item.substr(0, folder)), {item.substr(folder)}, files);
        else if (fs::is_directory(from_utf8(item), error))
            add_files_of(from_utf8(item), patterns_of(filter), files);
        else if (fs::is_regular_file(from_utf8(item), error))
            files.push_back(item);
    }
    return files;
}

selected_files grouped(const std::vector<std::string>& paths)
{
    selected_files selected{"", paths};
    sort_numbered_names(selected.names);
    if (paths.empty()) return selected;
    const std::string folder = paths.front().substr(0, folder_length(paths.front()));
    const auto is_inside = [&](const std::string& path) {
        return folder_length(path) == folder.size() && path.compare(0, folder.size(), folder) == 0;
    };
    if (!std::all_of(paths.begin(), paths.end(), is_inside)) return selected;
    selected.folder = folder;
    for (std::string& name : selected.names) name.erase(0, folder.size());
    return selected;
}

bool is_raw(std::string_view path)
{
    for (const char* pattern : {"*.dm3", "*.dm4", "*.tif", "*.tiff", "*.mrc", "*.mrcs", "*.map", "*.ccp4", "*.st",
                                "*.ali", "*.rec", "*.npy", "*.png", "*.jpg", "*.jpeg", "*.bmp", "*.gif"})
        if (matches(pattern, path)) return false;
    return true;
}

}  // namespace qorv::functions
