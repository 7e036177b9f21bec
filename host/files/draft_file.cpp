#include "host/files/draft_file.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

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

}  // namespace zentrix::host
