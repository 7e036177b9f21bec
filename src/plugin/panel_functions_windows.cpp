#include "binding/call.h"
#include "binding/host_functions.h"
#include "entry/timing_scope.h"
#include "panel/floating_panel.h"
#include "plugin/handler.h"
#include "plugin/module.h"
#include "plugin/panel_functions.h"

namespace qorv::dm {
namespace {

/// The panel's access to the held handler and tag group. References are copied before each use, because a handler may
/// replace the held ones while it runs.
class held_link final : public panel::panel_link
{
  public:
    bool has_handler() const override { return held_handler() && *held_handler(); }
    bool has_tags() const override { return held_tag_group() && *held_tag_group(); }

    std::optional<float> read_float(const char* key) const override
    {
        float value = 0;
        return has_tags() && binding::TagGroupGetTagAsFloat(tags(), key, value) ? std::optional{value} : std::nullopt;
    }
    std::optional<std::int32_t> read_long(const char* key) const override
    {
        std::int32_t value = 0;
        return has_tags() && binding::TagGroupGetTagAsLong(tags(), key, value) ? std::optional{value} : std::nullopt;
    }
    void write_float(const char* key, float value) override
    {
        if (has_tags()) binding::TagGroupSetTagAsFloat(tags(), key, value);
    }
    void write_long(const char* key, std::int32_t value) override
    {
        if (has_tags()) binding::TagGroupSetTagAsLong(tags(), key, value);
    }
    void call(const panel::handler_method& method) override { call_with(method); }
    void call(const panel::handler_method& method, std::uint32_t argument) override { call_with(method, argument); }

  private:
    static binding::tag_group_ref tags() { return *held_tag_group(); }

    template <class... Arguments>
    void call_with(const panel::handler_method& method, Arguments... arguments) const
    {
        if (!has_handler()) return;
        const binding::script_object_ref handler = *held_handler();
        binding::call_method<void>(handler, method.name, method.prototype, arguments...);
    }
};

held_link the_link;

void* HOST_CALL create_panel(void*, void* parent) noexcept
try {
    return panel::create_floating_panel(static_cast<HWND>(parent), the_link);
} catch (...) {
    Gatan::report_current_exception();
    return nullptr;
}

void HOST_CALL destroy_panel(void*, void* window) noexcept
try {
    panel::destroy_floating_panel(static_cast<HWND>(window));
} catch (...) {
    Gatan::report_current_exception();
}

}  // namespace

void ZentrixPanelUpdateDM()
{
    const timing_scope timing{"ZentrixPanelUpdateDM"};
    panel::update_panel();
}

std::int32_t IsPaletteOpenDM()
{
    const timing_scope timing{"IsPaletteOpenDM"};
    return panel::palette_open();
}

std::int32_t IsWindowVisibleDM()
{
    const timing_scope timing{"IsWindowVisibleDM"};
    return panel::window_visible();
}

void register_panel(Gatan::PlugIn::PlugInMain& plug_in)
{
    host_floating_window window{};
    window.size = sizeof window;
    window.title = "Zentrix";
    window.module = module_handle();
    window.create = &create_panel;
    window.destroy = &destroy_panel;
    plug_in.AddFloatingWindow(window);
}

}  // namespace qorv::dm
