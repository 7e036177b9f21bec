#include "tests/windows/panel_host.h"

#include <gtest/gtest.h>

#include "tests/faults/misbehaving_host.h"
#include "tests/support/companion_package.h"

namespace windows_tests {

using namespace zentrix::host;

std::optional<tag> panel_host::recorded_tags::get(const std::string& name) const
{
    if (broken) throw script_error{"This tag cannot be read."};
    reads.push_back(name);
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional{found->second};
}

panel_host::panel_host() : engine_{support::with_companion_package()}
{
    for (const char* rest : {"OnApply( ScriptObject self )", "OnPreferences( ScriptObject self )",
                             "OnPCTF( ScriptObject self )", "OnChange( ScriptObject self )",
                             "OnClose( ScriptObject self )", "OnChangeDisplay( ScriptObject self, uint32 nMode )"}) {
        const std::string prototype = rest, name = prototype.substr(0, prototype.find('('));
        handler_->add_method(
            "void " + prototype, [this, name](std::span<const script_value> arguments) -> script_value {
                events_.push_back(
                    arguments.size() > 1 ? name + " " + std::to_string(std::get<std::int64_t>(arguments[1])) : name);
                if (on_call) on_call();
                return {};
            });
    }
    tags_->on_write([this](std::string_view path, const tag& value) {
        events_.push_back(std::string{path} + " = " + text_of(value));
    });
    faults::watch_calls(engine_);
    library_.emplace(engine_, ZENTRIX_LIBRARY_FILE);
    set_handler_and_tags(true, true);
}

panel_host::~panel_host()
{
    library_.reset();
    const auto held = engine_.report();
    EXPECT_TRUE(held.violations.empty() && held.locks.empty() && held.others.empty()) << held.text();
    if (handlers_set_ == 1) {
        EXPECT_TRUE(held.references.empty()) << held.text();
    }
}

void panel_host::set_handler_and_tags(bool handler, bool tags)
{
    engine_.call("ZXSetZentrixHandler",
                 {handler ? object_ref{handler_} : object_ref{}, tags ? object_ref{tags_} : object_ref{}});
    ++handlers_set_;
}

events panel_host::take_errors()
{
    events texts;
    for (const auto& error : engine_.records().errors()) texts.push_back(error.text);
    engine_.records().clear();
    return texts;
}

}  // namespace windows_tests
