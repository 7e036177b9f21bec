#include "plugin/module.h"

#ifdef _WIN32
#include <windows.h>

#include <shlwapi.h>

#include "binding/text_windows.h"
#else
#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#endif

namespace qorv::dm {
namespace {

void* the_module = nullptr;

}  // namespace

void* module_handle() noexcept { return the_module; }

void set_module_handle(void* handle) noexcept { the_module = handle; }

#ifdef _WIN32

namespace {

constexpr DWORD path_room = MAX_PATH;  // 260 characters, including the terminating zero

}  // namespace

std::string module_path(void* handle)
{
    char path[path_room] = {};
    const DWORD length = GetModuleFileNameA(static_cast<HMODULE>(handle), path, path_room);
    return length > 0 && length < path_room ? platform::to_utf8(path) : std::string{};
}

std::string with_extension(const std::string& path, const std::string& extension)
{
    char renamed[path_room] = {};
    const std::string ansi = platform::to_ansi(path);
    if (ansi.size() >= path_room) return path;
    ansi.copy(renamed, ansi.size());
    PathRenameExtensionA(renamed, extension.c_str());
    return platform::to_utf8(renamed);
}

#else

std::string module_path(void* handle)
{
    Dl_info found{};
    if (!dladdr(handle, &found) || !found.dli_fname) return {};
    const std::unique_ptr<char, decltype(&std::free)> full{realpath(found.dli_fname, nullptr), &std::free};
    return full ? full.get() : found.dli_fname;
}

std::string with_extension(const std::string& path, const std::string& extension)
{
    return std::filesystem::path{path}.replace_extension(extension).string();
}

#endif

}  // namespace qorv::dm
