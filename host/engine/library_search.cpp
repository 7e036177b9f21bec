#include "host/engine/library_search.h"

#include "host/objects/value.h"
#include "host/text/system_path.h"

#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#endif

namespace zentrix::host {

namespace {

#ifdef _WIN32
constexpr char file_name[] = "Zentrix64.dll";

std::filesystem::path program_folder()
{
    std::wstring path(32768, L'\0');  // the longest path of the system
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path{path}.parent_path();
}
#else
constexpr char file_name[] = "Zentrix64.so";

std::filesystem::path program_folder()
{
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
}
#endif

}  // namespace

std::string find_library_file()
{
    if (const char* named = std::getenv("ZENTRIX_LIBRARY"); named && *named) return named;
    const auto folder = program_folder();
    if (folder.empty())
        throw script_error{"The folder of the program is unknown. Name the library in ZENTRIX_LIBRARY."};
    const auto file = folder / file_name;
    std::error_code unreadable;
    if (std::filesystem::exists(file, unreadable)) return utf8_path(file);
    throw script_error{"The library \"" + utf8_path(file) +
                       "\" does not exist. Put it there or name it in ZENTRIX_LIBRARY."};
}

}  // namespace zentrix::host
