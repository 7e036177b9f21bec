#pragma once

#include "panel/rules/panel_link.h"

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A host of the panel that keeps tags in two maps and records all reads, writes and calls.
class recording_link final : public qorv::panel::panel_link
{
  public:
    bool handler = true, tags = true;
    std::map<std::string, float> floats;
    std::map<std::string, std::int32_t> longs;
    mutable std::vector<std::string> reads;
    std::vector<std::string> events;  ///< "ModA1 = 2.5" for a write, "OnChange" for a call, in order

    /// Returns and clears the recorded events.
    std::vector<std::string> take_events() { return std::exchange(events, {}); }

    bool has_handler() const override { return handler; }
    bool has_tags() const override { return tags; }
    std::optional<float> read_float(const char* key) const override { return find(floats, key); }
    std::optional<std::int32_t> read_long(const char* key) const override { return find(longs, key); }
    void write_float(const char* key, float value) override { write(floats, key, value); }
    void write_long(const char* key, std::int32_t value) override { write(longs, key, value); }
    std::function<void()> on_call;  ///< the body of the handler
    void call(const qorv::panel::handler_method& method) override
    {
        if (!handler) return;
        events.push_back(method.name);
        if (on_call) on_call();
    }
    void call(const qorv::panel::handler_method& method, std::uint32_t argument) override
    {
        if (handler) events.push_back(std::string{method.name} + " " + std::to_string(argument));
    }

  private:
    template <class T>
    std::optional<T> find(const std::map<std::string, T>& values, const char* key) const
    {
        reads.push_back(key);
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional{found->second};
    }

    template <class T>
    void write(std::map<std::string, T>& values, const char* key, T value)
    {
        if (!tags) return;
        values[key] = value;
        std::ostringstream text;
        text << key << " = " << value;
        events.push_back(text.str());
    }
};

}  // namespace support
