#include "functions/system/special_directory.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qorv::platform {
namespace {

namespace fs = std::filesystem;

/// A folder identifier, the entry of user-dirs.dirs or the environment variable that gives its path, and the default
/// below the home directory.
struct folder_row
{
    int identifier;
    const char* name;
    bool is_user_directory;  ///< an entry of user-dirs.dirs
    const char* fallback;
};

constexpr folder_row folders[] = {
    {0x00, "XDG_DESKTOP_DIR", true, "Desktop"},     {0x10, "XDG_DESKTOP_DIR", true, "Desktop"},
    {0x05, "XDG_DOCUMENTS_DIR", true, "Documents"}, {0x0d, "XDG_MUSIC_DIR", true, "Music"},
    {0x0e, "XDG_VIDEOS_DIR", true, "Videos"},       {0x15, "XDG_TEMPLATES_DIR", true, "Templates"},
    {0x27, "XDG_PICTURES_DIR", true, "Pictures"},   {0x1a, "XDG_CONFIG_HOME", false, ".config"},
    {0x1c, "XDG_DATA_HOME", false, ".local/share"}, {0x28, "", false, ""},
};

std::string home()
{
    if (const char* path = std::getenv("HOME"); path && *path) return path;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

std::string from_environment(const char* name)
{
    const char* path = *name ? std::getenv(name) : nullptr;
    return path && *path == '/' ? path : "";
}

/// The entry NAME="$HOME/Somewhere" or NAME="/somewhere" of the user's user-dirs.dirs; empty when there is none.
std::string from_user_dirs(const std::string& home_path, std::string_view name)
{
    std::string config = from_environment("XDG_CONFIG_HOME");
    if (config.empty()) config = home_path + "/.config";
    std::ifstream file{config + "/user-dirs.dirs"};
    const std::string entry = std::string{name} + "=\"";
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(entry, 0) != 0 || line.back() != '"') continue;
        std::string path = line.substr(entry.size(), line.size() - entry.size() - 1);
        if (path.rfind("$HOME", 0) == 0) path.replace(0, 5, home_path);
        return path;
    }
    return {};
}

}  // namespace

std::string special_directory(int folder, bool create)
{
    // As on Windows, the second byte holds flags, of which only the one for creation applies here.
    constexpr int flags = 0xff00, create_flag = 0x8000;
    create = create || (folder & create_flag) != 0;
    folder &= ~flags;
    const std::string home_path = home();
    if (home_path.empty()) return {};
    for (const auto& row : folders) {
        if (row.identifier != folder) continue;
        std::string path = row.is_user_directory ? from_user_dirs(home_path, row.name) : from_environment(row.name);
        if (path.empty()) path = *row.fallback ? home_path + "/" + row.fallback : home_path;
        std::error_code ignored;
        if (create) fs::create_directories(path, ignored);
        if (!fs::is_directory(path, ignored)) return {};
        if (path.back() != '/') path += '/';
        return path;
    }
    return {};
}

}  // namespace qorv::platform
