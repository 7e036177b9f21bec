#include "host/engine/host_functions.h"

namespace zentrix::host {

namespace {

/// Stores the value found in output 2. Returns 1, or 0 and stores nothing where no value was found.
template <class T>
script_value answer(const arguments& passed, const std::optional<T>& found)
{
    if constexpr (std::is_same_v<T, std::int32_t>) {
        if (found) passed.set(2, std::int64_t{*found});
    } else if constexpr (std::is_same_v<T, float>) {
        if (found) passed.set(2, double{*found});
    } else {
        if (found) passed.set(2, *found);
    }
    return std::int64_t{found.has_value()};
}

void register_readers(engine_state& state)
{
    state.add_host_function("Boolean TagGroupGetTagAsFloat( TagGroup, string, float * )", [](const arguments& passed) {
        return answer(passed, passed.tags(0)->read_float(passed.text(1)));
    });
    state.add_host_function("Boolean TagGroupGetTagAsLong( TagGroup, string, long * )", [](const arguments& passed) {
        return answer(passed, passed.tags(0)->read_long(passed.text(1)));
    });
    state.add_host_function(
        "Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )",
        [](const arguments& passed) { return answer(passed, passed.tags(0)->read_string(passed.text(1))); });
    state.add_host_function(
        "Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )", [](const arguments& passed) {
            const auto index = passed.integer(1);
            const auto found = index < 0 ? std::nullopt : passed.tags(0)->get_at(static_cast<std::size_t>(index));
            const auto* group = found ? std::get_if<tag_group_ref>(&*found) : nullptr;
            return answer(passed, group ? std::optional<object_ref>{*group} : std::nullopt);
        });
    state.add_host_function("long TagGroupCountTags( TagGroup )",
                            [](const arguments& passed) { return static_cast<std::int64_t>(passed.tags(0)->count()); });
}

void register_writers(engine_state& state)
{
    state.add_host_function("void TagGroupSetTagAsFloat( TagGroup, string, float )",
                            [](const arguments& passed) -> script_value {
                                passed.tags(0)->write(passed.text(1), static_cast<float>(passed.real(2)));
                                return {};
                            });
    state.add_host_function("void TagGroupSetTagAsLong( TagGroup, string, long )",
                            [](const arguments& passed) -> script_value {
                                passed.tags(0)->write(passed.text(1), passed.integer_as<std::int32_t>(2));
                                return {};
                            });
    state.add_host_function("void TagGroupSetTagAsString( TagGroup, string, dm_string )",
                            [](const arguments& passed) -> script_value {
                                passed.tags(0)->write(passed.text(1), passed.text(2));
                                return {};
                            });
    state.add_host_function("void TagGroupInsertTagAsTagGroup( TagGroup, long, TagGroup )",
                            [](const arguments& passed) -> script_value {
                                const auto into = passed.tags(0);
                                const auto inserted = passed.tags(2);
                                // A negative index, or one past the end, appends.
                                const auto index = passed.integer(1);
                                const auto count = into->count();
                                into->insert(index < 0 ? count : std::min<std::size_t>(count, index), inserted);
                                return {};
                            });
}

}  // namespace

void register_tag_functions(engine_state& state)
{
    state.add_host_function("TagGroup NewTagGroup(  )",
                            [](const arguments&) { return memory_tag_group::make_group(); });
    state.add_host_function("TagGroup NewTagList(  )", [](const arguments&) { return memory_tag_group::make_list(); });
    register_readers(state);
    register_writers(state);
}

}  // namespace zentrix::host
