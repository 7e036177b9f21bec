#include "host/batch/input_files.h"

#include <algorithm>
#include <set>
#include <system_error>

#include "host/batch/wildcard.h"
#include "host/files/file_error.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

/// The regular files of a folder that pass the filter, sorted by name.
std::vector<fs::path> files_in(const fs::path& folder, const file_filter& is_wanted)
{
    std::vector<fs::path> found;
    std::error_code failed, ignored;
    const fs::path place = folder.empty() ? fs::path{"."} : folder;
    for (fs::directory_iterator entry{place, failed}, end; !failed && entry != end; entry.increment(failed)) {
        const fs::path name = entry->path().filename();
        if (entry->is_regular_file(ignored) && is_wanted(folder / name)) found.push_back(folder / name);
    }
    if (failed) throw file_error{place, "cannot be read: " + failed.message()};
    std::sort(found.begin(), found.end());
    return found;
}

bool is_hidden(const fs::path& file) { return utf8_path(file.filename()).starts_with('.'); }

std::vector<fs::path> files_of_word(const fs::path& path, const file_filter& is_input)
{
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        auto found = files_in(path, [&](const fs::path& file) { return !is_hidden(file) && is_input(file); });
        if (found.empty()) throw file_error{path, "contains no image files"};
        return found;
    }
    const std::string pattern = utf8_path(path.filename());
    if (!has_wildcard(pattern) || fs::exists(path, ignored)) return {path};
    auto found = files_in(path.parent_path(),
                          [&](const fs::path& file) { return fits_wildcard(pattern, utf8_path(file.filename())); });
    if (found.empty()) throw file_error{path, "no file has such a name"};
    return found;
}

}  // namespace

std::vector<std::string> input_files(const std::vector<std::string>& words, const file_filter& is_input)
{
    std::vector<std::string> files;
    std::set<fs::path> known;
    for (const std::string& word : words)
        for (const fs::path& file : files_of_word(system_path(word), is_input))
            if (known.insert(file.lexically_normal()).second) files.push_back(utf8_path(file));
    return files;
}

}  // namespace zentrix::host
