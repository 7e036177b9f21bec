#include "host/engine/arguments.h"
#include "host/engine/engine_state.h"

namespace zentrix::host {

namespace {

using values = std::span<const script_value>;

/// Stores a tag's value, if there is one, in output 2 and tells whether there was.
template <class T>
script_value answer(const arguments& given, const std::optional<T>& found)
{
    if constexpr (std::is_same_v<T, std::int32_t>) {
        if (found) given.set(2, std::int64_t{*found});
    } else if constexpr (std::is_same_v<T, float>) {
        if (found) given.set(2, double{*found});
    } else {
        if (found) given.set(2, *found);
    }
    return std::int64_t{found.has_value()};
}

void write(engine::inside& in, const arguments& given, tag value)
{
    given.tags(0)->write(given.text(1), value);
    if (const auto& told = in.records->listening.tag_write) told(given.text(1), text_of(value));
}

void add_readers(engine::inside& to)
{
    to.add_host_function("Boolean TagGroupGetTagAsFloat( TagGroup, string, float * )", [](values list) {
        const arguments given{list};
        return answer(given, given.tags(0)->read_float(given.text(1)));
    });
    to.add_host_function("Boolean TagGroupGetTagAsLong( TagGroup, string, long * )", [](values list) {
        const arguments given{list};
        return answer(given, given.tags(0)->read_long(given.text(1)));
    });
    to.add_host_function("Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )", [](values list) {
        const arguments given{list};
        return answer(given, given.tags(0)->read_string(given.text(1)));
    });
    to.add_host_function("Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )", [](values list) {
        const arguments given{list};
        const auto group = given.tags(0);
        const auto index = given.integer(1);
        const auto found = index < 0 ? std::nullopt : group->get_at(static_cast<std::size_t>(index));
        const auto* held = found ? std::get_if<tag_group_ref>(&*found) : nullptr;
        return answer(given, held ? std::optional<object_ref>{*held} : std::nullopt);
    });
    to.add_host_function("long TagGroupCountTags( TagGroup )",
                         [](values list) { return static_cast<std::int64_t>(arguments{list}.tags(0)->count()); });
}

void add_writers(engine::inside& to)
{
    to.add_host_function("void TagGroupSetTagAsFloat( TagGroup, string, float )", [&to](values list) -> script_value {
        const arguments given{list};
        write(to, given, static_cast<float>(given.real(2)));
        return {};
    });
    to.add_host_function("void TagGroupSetTagAsLong( TagGroup, string, long )", [&to](values list) -> script_value {
        const arguments given{list};
        write(to, given, given.integer_as<std::int32_t>(2));
        return {};
    });
    to.add_host_function("void TagGroupSetTagAsString( TagGroup, string, dm_string )",
                         [&to](values list) -> script_value {
                             const arguments given{list};
                             write(to, given, given.text(2));
                             return {};
                         });
    to.add_host_function("void TagGroupInsertTagAsTagGroup( TagGroup, long, TagGroup )",
                         [](values list) -> script_value {
                             const arguments given{list};
                             const auto into = given.tags(0);
                             const auto inserted = given.tags(2);
                             if (into == inserted) throw script_error{"A tag list cannot be put into itself."};
                             // A number before the first or behind the last puts the tag at the end.
                             const auto index = given.integer(1);
                             const auto count = into->count();
                             into->insert(index < 0 ? count : std::min<std::size_t>(count, index), inserted);
                             return {};
                         });
}

}  // namespace

void add_tag_functions(engine::inside& to)
{
    to.add_host_function("TagGroup NewTagGroup(  )",
                         [](values) -> script_value { return memory_tag_group::make_group(); });
    to.add_host_function("TagGroup NewTagList(  )",
                         [](values) -> script_value { return memory_tag_group::make_list(); });
    add_readers(to);
    add_writers(to);
}

}  // namespace zentrix::host
