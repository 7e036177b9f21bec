#pragma once

#include "host/engine/engine.h"
#include "host/engine/library.h"

#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace windows_tests {

using events = std::vector<std::string>;

/// The built library in the stand-alone host, with a handler and a tag group that record all requests.
class panel_host
{
  public:
    /// Passes a handler and an empty tag group to the library.
    panel_host();
    /// Fails the test when the library violated the contract or holds more than handlers that were replaced.
    ~panel_host();

    /// Calls the script function ZXSetZentrixHandler with the handler and the tags, or null for either.
    void set_handler_and_tags(bool handler, bool tags);
    void set(const std::string& key, float value) { tags_->set(key, value); }
    void set(const std::string& key, int value) { tags_->set(key, std::int32_t{value}); }
    void clear_tags() { tags_->values.clear(); }

    HWND open_panel(HWND parent) { return static_cast<HWND>(engine_.open("Zentrix", parent)); }
    void close_panel() { engine_.close("Zentrix"); }
    /// ZXZentrixPanelUpdate, ZXIsPaletteOpen, ZXIsWindowVisible.
    void update_panel() { engine_.call("ZXZentrixPanelUpdate", {}); }
    std::int64_t palette_open() { return std::get<std::int64_t>(engine_.call("ZXIsPaletteOpen", {})); }
    bool window_visible() { return std::get<std::int64_t>(engine_.call("ZXIsWindowVisible", {})) != 0; }

    /// Events since the last call: "ModA1 = 2.5" for a tag that the library wrote, "OnChange" for a call of the
    /// handler.
    events take_events() { return std::exchange(events_, {}); }
    /// The keys that the library has read since the last call.
    events take_reads() { return std::exchange(tags_->reads, {}); }
    /// Texts in the error manager since the last call.
    events take_errors();
    std::function<void()> on_call;  ///< run at each call of the handler
    /// What the library holds, and its requests that can be made to fail.
    zentrix::host::held_report report() const { return engine_.report(); }
    zentrix::host::fault_plan& faults() { return engine_.faults(); }
    const std::map<std::string, zentrix::host::tag>& tags() const { return tags_->values; }
    void set_tag(const std::string& key, zentrix::host::tag value) { tags_->set(key, std::move(value)); }
    /// Makes reading a tag fail with "This tag cannot be read.", or work again.
    void break_tags(bool broken) { tags_->broken = broken; }

  private:
    struct recorded_tags : zentrix::host::memory_tag_group
    {
        recorded_tags() : memory_tag_group{false} {}
        std::optional<zentrix::host::tag> get(const std::string& name) const override;
        void set(const std::string& name, zentrix::host::tag value) override { values[name] = std::move(value); }

        std::map<std::string, zentrix::host::tag> values;
        mutable events reads;
        bool broken = false;
    };

    zentrix::host::engine engine_;
    std::shared_ptr<recorded_tags> tags_ = std::make_shared<recorded_tags>();
    std::shared_ptr<zentrix::host::script_object> handler_ =
        std::make_shared<zentrix::host::script_object>("test handler");
    events events_;
    int handlers_set_ = 0;
    std::optional<zentrix::host::library> library_;
};

}  // namespace windows_tests
