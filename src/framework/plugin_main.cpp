#include "framework/plugin_main.h"

#include <algorithm>
#include <mutex>

#include "framework/critical_section.h"
#include "framework/error_manager.h"
#include "framework/link.h"

namespace Gatan::PlugIn {
namespace {

struct plugin_list
{
    Win32::CriticalSection guard;
    std::vector<const PlugInMain*> plugins;
};

plugin_list& the_list()
{
    static plugin_list list;
    return list;
}

host_link* require_link()
{
    host_link* link = current_link();
    if (!link) throw gatan_exception{"There is no host to register with."};
    return link;
}

}  // namespace

std::string take_error_text(host_link* link, host_object* throwable, const char* fallback)
{
    if (!throwable) return fallback;
    std::string text = fallback;
    if (host_object* string = link->table->throwable_text(link, throwable)) {
        if (const char* characters = link->table->string_text(link, string, nullptr)) text = characters;
        link->table->object_release(link, string);
    }
    link->table->object_release(link, throwable);
    return text;
}

PlugInMain::PlugInMain() { the_list(); }  // constructs the list first, so that it outlives every plug-in object

PlugInMain::~PlugInMain() { tear_down(); }

void PlugInMain::AddFunction(const std::string& prototype, host_native native)
{
    host_link* link = require_link();
    functions_.reserve(functions_.size() + 1);  // nothing may fail after the registration
    std::string kept = prototype;
    host_object* error = nullptr;
    if (link->table->register_function(link, prototype.c_str(), native, nullptr, &error) != 0)
        throw gatan_exception{take_error_text(link, error, "The host refused a script function.")};
    functions_.push_back(std::move(kept));
}

void PlugInMain::AddFloatingWindow(const host_floating_window& window)
{
    host_link* link = require_link();
    window_titles_.reserve(window_titles_.size() + 1);
    std::string kept = window.title;
    host_object* error = nullptr;
    if (link->table->register_floating_window(link, &window, &error) != 0)
        throw gatan_exception{take_error_text(link, error, "The host refused a floating window.")};
    window_titles_.push_back(std::move(kept));
}

void PlugInMain::enlist()
{
    auto& list = the_list();
    const std::lock_guard lock{list.guard};
    if (std::find(list.plugins.begin(), list.plugins.end(), this) == list.plugins.end()) list.plugins.push_back(this);
    started_ = true;
}

bool PlugInMain::enlisted() const noexcept
{
    auto& list = the_list();
    const std::lock_guard lock{list.guard};
    return std::find(list.plugins.begin(), list.plugins.end(), this) != list.plugins.end();
}

void PlugInMain::tear_down() noexcept
{
    if (host_link* link = current_link()) {
        for (const auto& title : window_titles_) link->table->withdraw_floating_window(link, title.c_str());
        for (auto it = functions_.rbegin(); it != functions_.rend(); ++it)
            link->table->withdraw_function(link, it->c_str());
    }
    window_titles_.clear();
    functions_.clear();
    started_ = false;
    auto& list = the_list();
    const std::lock_guard lock{list.guard};
    std::erase(list.plugins, this);
}

}  // namespace Gatan::PlugIn
