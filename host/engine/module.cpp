#include "host/engine/library.h"
#include "host/text/system_path.h"

#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace zentrix::host {

namespace {

#ifdef _WIN32
constexpr char file_name[] = "Zentrix64.dll";

void* open_module(const std::string& path, std::string& reason)
{
    const auto full = std::filesystem::absolute(system_path(path));
    void* handle = LoadLibraryExW(full.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!handle) reason = "system error " + std::to_string(GetLastError());
    return handle;
}

void* symbol_in(void* handle, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

std::filesystem::path program_folder()
{
    std::wstring path(32768, L'\0');  // the longest path of the system
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path{path}.parent_path();
}
#else
constexpr char file_name[] = "Zentrix64.so";

void* open_module(const std::string& path, std::string& reason)
{
    // An absolute path keeps the search path out of it.
    const auto full = std::filesystem::absolute(system_path(path));
    void* handle = dlopen(full.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) reason = dlerror();
    return handle;
}

void* symbol_in(void* handle, const char* name) { return dlsym(handle, name); }

std::filesystem::path program_folder()
{
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
}
#endif

template <class Entry>
void find_entry(const module& in, const char* name, Entry& entry)
{
    entry = reinterpret_cast<Entry>(in.find(name));
    if (!entry) throw script_error{"\"" + in.path() + "\" has no entry point " + name + "."};
}

}  // namespace

module::module(const std::string& utf8_path) :path_{utf8_path}
{
    std::string reason;
    handle_ = open_module(path_, reason);
    if (!handle_) throw script_error{"\"" + path_ + "\" cannot be loaded: " + reason + "."};
}

void* module::find(const char* name) const noexcept { return symbol_in(handle_, name); }

library_entries module::entries() const
{
    library_entries found;
    find_entry(*this, "DMPlugIn_GetVersion", found.get_version);
    find_entry(*this, "DMPlugIn_Link_2", found.link);
    find_entry(*this, "PlugInRegisterFloatingWindows", found.register_floating_windows);
    find_entry(*this, "PlugInStartup", found.startup);
    find_entry(*this, "PlugInRun", found.run);
    find_entry(*this, "PlugInRequestClose", found.request_close);
    find_entry(*this, "PlugInPrepareClose", found.prepare_close);
    find_entry(*this, "PlugInCleanup", found.cleanup);
    find_entry(*this, "PlugInShutdown", found.shutdown);
    return found;
}

std::string find_library_file()
{
    if (const char* named = std::getenv("ZENTRIX_LIBRARY"); named && *named) return named;
    const auto folder = program_folder();
    std::string places;
    for (const auto& place : {folder, folder.parent_path() / "lib", folder.parent_path()}) {
        const auto file = place / file_name;
        std::error_code unreadable;
        if (std::filesystem::exists(file, unreadable)) return utf8_path(file);
        places += "\n    " + utf8_path(file);
    }
    throw script_error{"The library was not found. Name it in ZENTRIX_LIBRARY or put it at one of:" + places};
}

}  // namespace zentrix::host
