#include "host/files/draft_file.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <map>
#include <mutex>
#include <system_error>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace zentrix::host {

namespace fs = std::filesystem;

draft_list::entry draft_list::entries_[4];

void draft_list::add(const fs::path& draft) noexcept
{
    const auto& text = draft.native();
    for (entry& e : entries_) {
        if (e.is_used || text.size() >= std::size(e.path)) continue;
        *std::copy(text.begin(), text.end(), e.path) = 0;
        e.is_used = true;
        return;
    }
}

void draft_list::remove(const fs::path& draft) noexcept
{
    for (entry& e : entries_)
        if (e.is_used && draft.native() == e.path) e.is_used = false;
}

fs::path next_draft_name()
{
    static std::atomic<unsigned> number;
    return ".zentrix-" + std::to_string(getpid()) + "-" + std::to_string(++number) + ".part";
}

unsigned long process_of_draft(const fs::path& name)
{
    const std::u8string wide = name.u8string();
    const std::string text{wide.begin(), wide.end()};
    unsigned long process = 0;
    unsigned number = 0;
    int length = 0;
    const bool is_draft = std::sscanf(text.c_str(), ".zentrix-%lu-%u.part%n", &process, &number, &length) == 2 &&
                          length == static_cast<int>(text.size());
    return is_draft ? process : 0;
}

bool is_time_to_remove_remnants(const fs::path& folder)
{
    using clock = std::chrono::steady_clock;
    static std::mutex mutex;
    static std::map<fs::path, clock::time_point> last_looks;
    constexpr std::size_t most_folders = 1000;
    std::error_code unknown;
    const fs::path place = fs::absolute(folder, unknown);
    const auto now = clock::now();
    const std::lock_guard guard{mutex};
    const auto former = last_looks.find(place);
    if (former != last_looks.end() && now - former->second < std::chrono::minutes{1}) return false;
    if (last_looks.size() >= most_folders) last_looks.clear();
    last_looks[place] = now;
    return true;
}

}  // namespace zentrix::host
