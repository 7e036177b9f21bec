#include "host/engine/module.h"

#include "host/objects/value.h"
#include "host/text/system_path.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace zentrix::host {

namespace {

#ifdef _WIN32
void* open_module(const std::filesystem::path& file, std::string& reason)
{
    void* handle = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!handle) reason = "system error " + std::to_string(GetLastError());
    return handle;
}

void* symbol_in(void* handle, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

#else
void* open_module(const std::filesystem::path& file, std::string& reason)
{
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) reason = dlerror();
    return handle;
}

void* symbol_in(void* handle, const char* name) { return dlsym(handle, name); }

#endif

}  // namespace

module::module(const std::string& utf8_path) :path_{utf8_path}
{
    std::string reason;
    // With an absolute path the system does not use its search path.
    const auto file = std::filesystem::absolute(system_path(path_));
    std::error_code ignored;
    if (const auto status = std::filesystem::status(file, ignored); exists(status) && !is_regular_file(status))
        reason = "it is not a regular file";  // opening a pipe would wait for its writer
    else
        handle_ = open_module(file, reason);
    if (!handle_) throw script_error{"\"" + path_ + "\" cannot be loaded: " + reason + "."};
}

library_entries module::entries() const
{
    const auto find = [this]<class Entry>(const char* name, Entry& entry) {
        entry = reinterpret_cast<Entry>(symbol_in(handle_, name));
        if (!entry) throw script_error{"\"" + path_ + "\" has no entry point " + name + "."};
    };
    library_entries found;
    find("DMPlugIn_GetVersion", found.get_version);
    find("DMPlugIn_Link_2", found.link);
    find("PlugInRegisterFloatingWindows", found.register_floating_windows);
    find("PlugInStartup", found.startup);
    find("PlugInRun", found.run);
    find("PlugInRequestClose", found.request_close);
    find("PlugInPrepareClose", found.prepare_close);
    find("PlugInCleanup", found.cleanup);
    find("PlugInShutdown", found.shutdown);
    return found;
}

}  // namespace zentrix::host
