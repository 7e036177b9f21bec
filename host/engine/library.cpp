#include "host/engine/library.h"

#include <cstdio>

namespace zentrix::host {

namespace {

void require_all(const library_entries& entries)
{
    const bool complete = entries.get_version && entries.link && entries.register_floating_windows && entries.startup &&
                          entries.run && entries.request_close && entries.prepare_close && entries.cleanup &&
                          entries.shutdown;
    if (!complete) throw script_error{"The library lacks an entry point."};
}

}  // namespace

library::library(engine& host, const std::string& utf8_path) : library{host, module{utf8_path}.entries()} {}

library::library(engine& host, const library_entries& entries) : engine_{host}, entries_{entries}
{
    require_all(entries_);
    start();
}

library::~library()
{
    try {
        close();
    } catch (const std::exception& thrown) {  // entry points do not throw, but memory may run out
        std::fprintf(stderr, "closing the library: %s\n", thrown.what());
    }
}

void library::start()
{
    if (!engine_.on_main_thread()) throw script_error{"The library must be loaded on the host's main thread."};
    const auto version = entries_.get_version();
    if (version != HOST_LINK_PROTOCOL)
        throw script_error{"The library uses version " + std::to_string(version) +
                           " of the linking protocol, but this host uses version " +
                           std::to_string(HOST_LINK_PROTOCOL) + "."};
    entries_.link(engine_.link());
    entries_.register_floating_windows();
    entries_.startup();
    entries_.run();
    running_ = true;
}

std::int32_t library::close()
{
    if (!running_) return 0;
    running_ = false;
    const auto answer = entries_.request_close();
    entries_.prepare_close();
    for (const auto& window : std::vector{engine_.windows()}) engine_.close(window.title);
    entries_.cleanup();
    entries_.shutdown();
    entries_.link(nullptr);
    return answer;
}

}  // namespace zentrix::host
