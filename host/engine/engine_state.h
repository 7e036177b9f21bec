#pragma once

#include "host/engine/arguments.h"
#include "host/engine/engine.h"
#include "host/engine/handle_table.h"
#include "host/objects/image_lock.h"

#include <atomic>
#include <map>
#include <mutex>

namespace zentrix::host {

/// The body of a host function.
using host_function_body = std::function<script_value(const arguments&)>;

/// The parts of an engine that the sources in this folder share.
struct engine_state
{
    explicit engine_state(engine_options chosen);

    /// Adds a host function unless the options withhold its prototype.
    void add_host_function(std::string_view prototype_text, host_function_body body);
    bool on_main_thread() const noexcept { return std::this_thread::get_id() == main_thread; }
    /// Whether the library may call the contract's table on this thread.
    bool serves_this_thread() const noexcept;
    /// The registered floating window of that title, or windows.end().
    std::vector<floating_window>::iterator window(std::string_view title);

    /// The link and its engine. The library receives a pointer to the first member; the table's functions find the
    /// engine through it.
    struct link_with_owner
    {
        host_link link;
        engine_state* owner;
    };

    engine_options options;
    std::shared_ptr<journal> records = std::make_shared<journal>();
    fault_plan faults;
    std::mutex locks_access;
    std::vector<std::weak_ptr<image_lock>> locks;  ///< guarded by locks_access
    std::vector<floating_window> windows;
    std::map<std::uint64_t, std::string> custom_tools;
    std::uint64_t last_custom_tool = 0;
    std::atomic<std::int64_t> link_references{0};
    std::thread::id main_thread = std::this_thread::get_id();
    link_with_owner link;
    function_table functions;
    handle_table handles{*records};  // last, so that it is destroyed first: dying objects may write to the journal
};

}  // namespace zentrix::host
