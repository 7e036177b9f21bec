#pragma once

#include <cstdint>
#include <optional>

/// The panel's interface to its host: the tags that it shares with a handler script, and the handler itself. The
/// plug-in implements it with host calls; tests implement it in memory.
namespace qorv::panel {

/// A method of the handler object, with the name and prototype by which the host looks it up.
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

/// The handler and the tags may both be missing. Calls and writes are then ignored; callers that need to know ask
/// first. Every function may throw the host's exceptions.
class panel_link
{
  public:
    virtual ~panel_link() = default;

    virtual bool has_handler() const = 0;
    virtual bool has_tags() const = 0;

    /// Empty when the key is missing or has a type that the host does not convert.
    virtual std::optional<float> read_float(const char* key) const = 0;
    virtual std::optional<std::int32_t> read_long(const char* key) const = 0;
    virtual void write_float(const char* key, float value) = 0;
    virtual void write_long(const char* key, std::int32_t value) = 0;

    /// Calls a method with the handler as its only argument. The result is discarded.
    virtual void call(const handler_method& method) = 0;
    /// Same, with one more argument.
    virtual void call(const handler_method& method, std::uint32_t argument) = 0;
};

}  // namespace qorv::panel
