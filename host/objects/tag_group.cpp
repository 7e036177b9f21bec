#include "host/objects/tag_group.h"

#include "host/objects/value.h"
#include "host/text/number_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace zentrix::host {

namespace {

/// A part of a path: a name, or a number in brackets (then `index` is set too).
struct step
{
    std::string name;
    std::optional<std::size_t> index;
};

step parse_step(std::string_view text)
{
    step parsed{std::string{text}, {}};
    if (text.size() < 3 || text.front() != '[' || text.back() != ']') return parsed;
    parsed.index = parse_number<std::size_t>(text.substr(1, text.size() - 2));
    return parsed;
}

std::vector<step> steps_of(std::string_view path)
{
    std::vector<step> steps;
    for (;;) {
        const auto colon = path.find(':');
        steps.push_back(parse_step(path.substr(0, colon)));
        if (colon == std::string_view::npos) return steps;
        path.remove_prefix(colon + 1);
    }
}

std::optional<tag> get_step(const tag_group& in, const step& where)
{
    return where.index ? in.get_at(*where.index) : in.get(where.name);
}

void set_step(tag_group& in, const step& where, tag value)
{
    if (!where.index && !in.is_list()) return in.set(where.name, std::move(value));
    if (where.index && in.is_list() && *where.index < in.count()) return in.replace(*where.index, std::move(value));
    if (where.index && in.is_list() && *where.index == in.count()) return in.insert(*where.index, std::move(value));
    throw script_error{"The " + in.describe() + " has no place for a tag \"" + where.name + "\"."};
}

/// The group at a step, created when it does not exist.
tag_group_ref enter(tag_group& in, const step& where)
{
    const auto present = get_step(in, where);
    if (!present) {
        set_step(in, where, memory_tag_group::make_group());
        return std::get<tag_group_ref>(get_step(in, where).value());
    }
    if (const auto* group = std::get_if<tag_group_ref>(&*present); group && *group) return *group;
    throw script_error{"The tag \"" + where.name + "\" is not a group."};
}

std::optional<double> number_in(const std::optional<tag>& found)
{
    if (!found) return std::nullopt;
    if (const auto* number = std::get_if<std::int32_t>(&*found)) return *number;
    if (const auto* number = std::get_if<float>(&*found)) return *number;
    if (const auto* number = std::get_if<double>(&*found)) return *number;
    return std::nullopt;
}

template <class T>
std::optional<T> held_in(const std::optional<tag>& found)
{
    const auto* held = found ? std::get_if<T>(&*found) : nullptr;
    return held ? std::optional{*held} : std::nullopt;
}

}  // namespace

std::string text_of(const tag& value)
{
    struct writer
    {
        std::string operator()(std::int32_t number) const { return std::to_string(number); }
        std::string operator()(float number) const { return number_text(number); }
        std::string operator()(double number) const { return number_text(number); }
        std::string operator()(const std::string& text) const { return '"' + text + '"'; }
        std::string operator()(const tag_group_ref& group) const { return group ? group->describe() : "null"; }
    };
    return std::visit(writer{}, value);
}

std::optional<tag> tag_group::find(std::string_view path) const
{
    const auto steps = steps_of(path);
    auto found = get_step(*this, steps.front());
    for (std::size_t i = 1; i < steps.size(); ++i) {
        const auto group = held_in<tag_group_ref>(found);
        if (!group || !*group) return std::nullopt;
        found = get_step(**group, steps[i]);
    }
    return found;
}

std::optional<std::int32_t> tag_group::read_long(std::string_view path) const
{
    using limits = std::numeric_limits<std::int32_t>;
    const auto number = number_in(find(path));
    if (!number) return std::nullopt;
    const double whole = std::trunc(*number);
    const bool fits = whole >= limits::min() && whole <= limits::max();  // false for NaN
    return fits ? std::optional{static_cast<std::int32_t>(whole)} : std::nullopt;
}

std::optional<float> tag_group::read_float(std::string_view path) const
{
    const auto number = number_in(find(path));
    if (!number) return std::nullopt;
    const bool fits = !std::isfinite(*number) || std::abs(*number) <= std::numeric_limits<float>::max();
    return fits ? std::optional{static_cast<float>(*number)} : std::nullopt;
}

std::optional<std::string> tag_group::read_string(std::string_view path) const
{
    return held_in<std::string>(find(path));
}

void tag_group::write(std::string_view path, tag value)
{
    const auto steps = steps_of(path);
    tag_group_ref kept;
    tag_group* in = this;
    for (std::size_t i = 0; i + 1 < steps.size(); ++i) {
        kept = enter(*in, steps[i]);
        in = kept.get();
    }
    set_step(*in, steps.back(), value);
    if (listener_) listener_(path, value);
}

std::string tag_group::describe() const
{
    return std::string{is_list() ? "tag list" : "tag group"} + " of " + std::to_string(count());
}

tag_group_ref memory_tag_group::make_group() { return std::make_shared<memory_tag_group>(false); }

tag_group_ref memory_tag_group::make_list() { return std::make_shared<memory_tag_group>(true); }

// Destroys nested groups one after the other: recursion would overflow the stack at a great depth. Links instead of a
// container, because a destructor must not run out of memory.
memory_tag_group::~memory_tag_group()
{
    std::shared_ptr<memory_tag_group> doomed;
    const auto take_groups = [&doomed](memory_tag_group& from) {
        for (auto& [name, value] : from.tags_) {
            auto* held = std::get_if<tag_group_ref>(&value);
            if (!held) continue;
            auto group = std::dynamic_pointer_cast<memory_tag_group>(std::exchange(*held, nullptr));
            if (!group || group.use_count() > 1) continue;
            group->next_to_destroy_ = std::move(doomed);
            doomed = std::move(group);
        }
    };
    take_groups(*this);
    while (doomed) {
        const auto dying = std::move(doomed);
        doomed = std::move(dying->next_to_destroy_);
        take_groups(*dying);
    }
}

bool memory_tag_group::is_inside(const memory_tag_group& outer) const
{
    std::unordered_set<const memory_tag_group*> seen{&outer};
    std::vector<const memory_tag_group*> open{&outer};
    while (!open.empty()) {
        const auto* group = open.back();
        open.pop_back();
        if (group == this) return true;
        for (const auto& [name, value] : group->tags_) {
            const auto* held = std::get_if<tag_group_ref>(&value);
            const auto* inner = held ? dynamic_cast<const memory_tag_group*>(held->get()) : nullptr;
            if (inner && seen.insert(inner).second) open.push_back(inner);
        }
    }
    return false;
}

void memory_tag_group::require_no_cycle(const tag& added)
{
    const auto* held = std::get_if<tag_group_ref>(&added);
    auto* group = held ? dynamic_cast<memory_tag_group*>(held->get()) : nullptr;
    if (!group) return;
    // A group that was never put into another one can only be the added group itself. This saves most searches.
    if (group == this || (was_nested_ && is_inside(*group)))
        throw script_error{"A tag group or list cannot contain itself, directly or inside another one."};
    group->was_nested_ = true;
}

std::optional<tag> memory_tag_group::get(const std::string& name) const
{
    if (is_list_) return std::nullopt;
    for (const auto& [present, value] : tags_)
        if (present == name) return value;
    return std::nullopt;
}

std::optional<tag> memory_tag_group::get_at(std::size_t index) const
{
    return index < tags_.size() ? std::optional{tags_[index].second} : std::nullopt;
}

std::string memory_tag_group::name_at(std::size_t index) const
{
    return index < tags_.size() ? tags_[index].first : std::string{};
}

void memory_tag_group::set(const std::string& name, tag value)
{
    if (is_list_) throw script_error{"A tag list has no named tags."};
    require_no_cycle(value);
    for (auto& [present, old] : tags_)
        if (present == name) {
            old = std::move(value);
            return;
        }
    tags_.emplace_back(name, std::move(value));
}

void memory_tag_group::insert(std::size_t index, tag value)
{
    if (!is_list_) throw script_error{"Tags are inserted by number into tag lists only."};
    require_no_cycle(value);
    const auto place = tags_.begin() + static_cast<std::ptrdiff_t>(std::min(index, tags_.size()));
    tags_.insert(place, {std::string{}, std::move(value)});
}

void memory_tag_group::replace(std::size_t index, tag value)
{
    if (!is_list_ || index >= tags_.size()) throw script_error{"The tag list has no tag of that number."};
    require_no_cycle(value);
    tags_[index].second = std::move(value);
}

}  // namespace zentrix::host
