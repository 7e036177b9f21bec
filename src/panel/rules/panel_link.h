#pragma once

#include <cstdint>
#include <optional>

/// What the panel needs of its host: the record of tags that a handler script shares with it, and the handler itself.
/// The plug-in's link speaks to the host; tests put a record of their own behind it.
namespace qorv::panel {

/// A method that the panel calls on the handler object, with its name and prototype as the host looks them up.
struct handler_method
{
    const char* name;
    const char* prototype;
};

inline constexpr handler_method on_apply{"OnApply", "void OnApply( ScriptObject self )"};
inline constexpr handler_method on_preferences{"OnPreferences", "void OnPreferences(ScriptObject self)"};
inline constexpr handler_method on_pctf{"OnPCTF", "void OnPCTF(ScriptObject self)"};
inline constexpr handler_method on_change_display{"OnChangeDisplay",
                                                  "void OnChangeDisplay(ScriptObject self, uint32 nMode)"};
inline constexpr handler_method on_change{"OnChange", "void OnChange( ScriptObject self )"};
inline constexpr handler_method on_close{"OnClose", "void OnClose( ScriptObject self )"};

/// Both the handler and the tags may be missing; callers ask first, and a call or write without is ignored. Any of the
/// functions may throw what the host throws.
class panel_link
{
  public:
    virtual ~panel_link() = default;

    virtual bool has_handler() const = 0;
    virtual bool has_tags() const = 0;

    /// Empty when the key is missing (or of a type that the host does not convert).
    virtual std::optional<float> read_float(const char* key) const = 0;
    virtual std::optional<std::int32_t> read_long(const char* key) const = 0;
    virtual void write_float(const char* key, float value) = 0;
    virtual void write_long(const char* key, std::int32_t value) = 0;

    /// Calls a method whose only argument is the handler itself; its result is dropped.
    virtual void call(const handler_method& method) = 0;
    /// The same with one more argument.
    virtual void call(const handler_method& method, std::uint32_t argument) = 0;
};

}  // namespace qorv::panel
