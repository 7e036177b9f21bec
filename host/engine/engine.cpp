#include "host/engine/engine_state.h"

#include <algorithm>

namespace zentrix::host {

engine::inside::inside(engine_options chosen) : options{std::move(chosen)}, link{{&the_table()}, this}
{
    records->listening = options.listening;
    add_image_functions(*this);
    add_image_data_functions(*this);
    add_tag_functions(*this);
    add_object_functions(*this);
    add_window_functions(*this);
}

void engine::inside::add_host_function(std::string_view prototype_text, callable body)
{
    if (std::ranges::find(options.withheld, prototype_text) != options.withheld.end()) return;
    functions.add(make_function(prototype_text, std::move(body)), origin::host);
}

std::vector<floating_window>::iterator engine::inside::window(std::string_view title)
{
    return std::ranges::find(windows, title, &floating_window::title);
}

engine::engine(engine_options options) : inside_{std::make_unique<inside>(std::move(options))} {}

engine::~engine() { forget_held(); }

host_link* engine::link() noexcept { return &inside_->link.link; }

script_value engine::call(std::string_view name, std::span<const script_value> arguments)
{
    if (!on_main_thread()) throw script_error{"Scripts run on the host's main thread only."};
    const auto callee = inside_->functions.resolve(name, arguments);
    try {
        return call_converted(*callee, arguments);
    } catch (const script_error&) {
        throw;
    } catch (const std::exception& thrown) {
        throw script_error{thrown.what()};
    }
}

script_value engine::call(std::string_view name, std::initializer_list<script_value> arguments)
{
    return call(name, std::span{arguments.begin(), arguments.size()});
}

const engine_options& engine::options() const noexcept { return inside_->options; }

function_table& engine::functions() noexcept { return inside_->functions; }

fault_plan& engine::faults() noexcept { return inside_->faults; }

journal& engine::records() noexcept { return *inside_->records; }

bool engine::on_main_thread() const noexcept { return inside_->on_main_thread(); }

const std::vector<floating_window>& engine::windows() const noexcept { return inside_->windows; }

void* engine::open(std::string_view title, void* parent)
{
    const auto found = inside_->window(title);
    if (found == inside_->windows.end())
        throw script_error{"No floating window \"" + std::string{title} + "\" is registered."};
    if (found->window) return found->window;
    void* made = found->create(found->context, parent);
    // The callback may have registered or withdrawn windows.
    const auto again = inside_->window(title);
    if (again != inside_->windows.end()) again->window = made;
    return made;
}

void engine::close(std::string_view title)
{
    const auto found = inside_->window(title);
    if (found == inside_->windows.end() || !found->window) return;
    void* closing = std::exchange(found->window, nullptr);
    found->destroy(found->context, closing);
}

held_report engine::report() const
{
    held_report held;
    held.references = inside_->handles.held();
    for (const auto& one : inside_->locks)
        if (const auto lock = one.lock(); lock && lock->is_locked()) held.locks.push_back(lock->describe());
    if (const auto references = inside_->link_references.load())
        held.others.push_back("the link: " + std::to_string(references) + " references");
    for (const auto& text : inside_->functions.prototypes(origin::library))
        held.others.push_back("the script function \"" + text + "\" is registered");
    for (const auto& one : inside_->windows)
        held.others.push_back("the floating window \"" + one.title + "\" is registered");
    for (const auto& [id, name] : inside_->custom_tools)
        held.others.push_back("the custom tool \"" + name + "\" is registered");
    held.violations = inside_->records->violations();
    return held;
}

void engine::forget_held()
{
    inside_->handles.forget();
    inside_->link_references = 0;
    for (const auto& text : inside_->functions.prototypes(origin::library))
        inside_->functions.remove(text, origin::library);
    inside_->windows.clear();
    inside_->custom_tools.clear();
}

std::string held_report::text() const
{
    std::string all;
    const auto add = [&](const char* what, const std::vector<std::string>& lines) {
        for (const auto& line : lines) all += std::string{what} + line + "\n";
    };
    add("held: ", references);
    add("locked: ", locks);
    add("left: ", others);
    add("breach: ", violations);
    return all;
}

}  // namespace zentrix::host
