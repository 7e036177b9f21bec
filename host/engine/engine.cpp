#include "host/engine/engine.h"

#include "host/engine/engine_state.h"

namespace zentrix::host {

namespace {

/// The script function that the contract permits on every thread.
constexpr std::string_view for_any_thread = "ZXWTFMulDLL";

/// The engine that a script function was called with on this thread.
thread_local const engine_state* calling = nullptr;

class call_on_this_thread
{
  public:
    explicit call_on_this_thread(const engine_state& state) noexcept : before_{std::exchange(calling, &state)} {}
    ~call_on_this_thread() { calling = before_; }
    call_on_this_thread(const call_on_this_thread&) = delete;
    call_on_this_thread& operator=(const call_on_this_thread&) = delete;

  private:
    const engine_state* before_;
};

}  // namespace

bool engine_state::serves_this_thread() const noexcept { return on_main_thread() || calling == this; }

engine::engine(engine_options options) : state_{std::make_unique<engine_state>(std::move(options))} {}

engine::~engine() { forget_held(); }

host_link* engine::link() noexcept { return &state_->link.link; }

script_value engine::call(std::string_view name, std::span<const script_value> arguments)
{
    if (!on_main_thread() && name != for_any_thread) throw script_error{"Scripts run on the host's main thread only."};
    const call_on_this_thread here{*state_};
    const auto callee = state_->functions.resolve(name, arguments);
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

const engine_options& engine::options() const noexcept { return state_->options; }

function_table& engine::functions() noexcept { return state_->functions; }

fault_plan& engine::faults() noexcept { return state_->faults; }

journal& engine::records() noexcept { return *state_->records; }

bool engine::on_main_thread() const noexcept { return state_->on_main_thread(); }

void engine::adopt_main_thread() noexcept { state_->main_thread = std::this_thread::get_id(); }

const std::vector<floating_window>& engine::windows() const noexcept { return state_->windows; }

void* engine::open(std::string_view title, void* parent)
{
    const auto found = state_->window(title);
    if (found == state_->windows.end())
        throw script_error{"No floating window \"" + std::string{title} + "\" is registered."};
    if (found->window) return found->window;
    void* created = found->create(found->context, parent);
    // The callback may have registered or withdrawn windows, so `found` may be invalid.
    if (const auto again = state_->window(title); again != state_->windows.end()) again->window = created;
    return created;
}

void engine::close(std::string_view title)
{
    const auto found = state_->window(title);
    if (found == state_->windows.end() || !found->window) return;
    void* closing = std::exchange(found->window, nullptr);
    found->destroy(found->context, closing);
}

held_report engine::report() const
{
    held_report held;
    held.references = state_->handles.held();
    const auto locks = [&] {  // a copy, as in handle_table::held
        const std::lock_guard guard{state_->locks_access};
        return state_->locks;
    }();
    for (const auto& one : locks)
        if (const auto lock = one.lock(); lock && lock->is_locked()) held.locks.push_back(lock->describe());
    if (const auto references = state_->link_references.load())
        held.others.push_back("the link: " + std::to_string(references) + " references");
    for (const auto& text : state_->functions.prototypes(origin::library))
        held.others.push_back("the script function \"" + text + "\" is registered");
    for (const auto& one : state_->windows)
        held.others.push_back("the floating window \"" + one.title + "\" is registered");
    for (const auto& [id, name] : state_->custom_tools)
        held.others.push_back("the custom tool \"" + name + "\" is registered");
    held.violations = state_->records->violations();
    return held;
}

void engine::forget_held()
{
    state_->handles.forget();
    state_->link_references = 0;
    for (const auto& text : state_->functions.prototypes(origin::library))
        state_->functions.remove(text, origin::library);
    state_->windows.clear();
    state_->custom_tools.clear();
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
