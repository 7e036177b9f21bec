// The built library in a host that unloads it, as the stand-alone host never does.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>

#include "host/engine/library.h"
#include "host/objects/image.h"

namespace {

using namespace zentrix::host;

template <class Function>
void find(void* file, const char* name, Function& entry)
{
    entry = reinterpret_cast<Function>(dlsym(file, name));
}

library_entries entries_of(void* file)
{
    library_entries entries;
    find(file, "DMPlugIn_GetVersion", entries.get_version);
    find(file, "DMPlugIn_Link_2", entries.link);
    find(file, "PlugInRegisterFloatingWindows", entries.register_floating_windows);
    find(file, "PlugInStartup", entries.startup);
    find(file, "PlugInRun", entries.run);
    find(file, "PlugInRequestClose", entries.request_close);
    find(file, "PlugInPrepareClose", entries.prepare_close);
    find(file, "PlugInCleanup", entries.cleanup);
    find(file, "PlugInShutdown", entries.shutdown);
    return entries;
}

TEST(Unload, LibraryCanBeUnloadedAfterAParallelLoop)
{
    for (int round = 0; round < 20; ++round) {
        void* const file = dlopen(ZENTRIX_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(file, nullptr) << dlerror();
        {
            engine_options options;
            options.file_exists = [](const std::string&) { return true; };
            engine host{options};
            const library zentrix{host, entries_of(file)};
            const auto wave = image::create("wave", HOST_ELEMENT_COMPLEX64, std::array{512u, 512u});
            host.call("ZXSetNumThreads", {4});
            host.call("ZXImageShifterForSemper", {wave, 0, 0, 256., 256., 0., wave});
        }
        EXPECT_EQ(dlclose(file), 0);
        // The parallel runtime's threads live on, so the code that they run must stay.
        void* const mapped = dlopen(ZENTRIX_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
        ASSERT_NE(mapped, nullptr);
        dlclose(mapped);
    }
}

}  // namespace
