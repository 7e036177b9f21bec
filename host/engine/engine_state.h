#pragma once

#include "host/engine/engine.h"
#include "host/engine/handle_table.h"
#include "host/objects/image_lock.h"

#include <atomic>
#include <map>

namespace zentrix::host {

/// What the sources of this folder share of an engine.
struct engine::inside
{
    explicit inside(engine_options chosen);

    /// Adds a host function unless the options withhold it.
    void add_host_function(std::string_view prototype_text, callable body);
    bool on_main_thread() const noexcept { return std::this_thread::get_id() == main_thread; }
    std::vector<floating_window>::iterator window(std::string_view title);

    /// The link with the way back from it to the engine; the library sees the first member only.
    struct link_with_owner
    {
        host_link link;
        inside* owner;
    };

    engine_options options;
    std::shared_ptr<journal> records = std::make_shared<journal>();
    fault_plan faults;
    std::vector<std::weak_ptr<image_lock>> locks;
    std::vector<floating_window> windows;
    std::map<std::uint64_t, std::string> custom_tools;
    std::uint64_t last_custom_tool = 0;
    std::atomic<std::int64_t> link_references{0};
    std::thread::id main_thread = std::this_thread::get_id();
    link_with_owner link;
    function_table functions;
    handle_table handles{*records};  // dies first: objects may tell the journal when they do
};

/// The contract's table; every function in it reports failures as the contract says and lets no exception out.
const host_table& the_table() noexcept;

/// The host functions, by topic.
void add_image_functions(engine::inside& to);
void add_image_data_functions(engine::inside& to);
void add_tag_functions(engine::inside& to);
void add_object_functions(engine::inside& to);
void add_window_functions(engine::inside& to);

}  // namespace zentrix::host
