#include "host/objects/tag_group.h"

#include "host/objects/value.h"
#include "host/text/number_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zentrix::host {

namespace {

/// A part of a path: a name, or a number in brackets.
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

std::optional<tag> get_step(const tag_group& in, const step& wanted)
{
    return wanted.index ? in.get_at(*wanted.index) : in.get(wanted.name);
}

void set_step(tag_group& in, const step& where, tag value)
{
    if (!where.index && !in.is_list()) return in.set(where.name, std::move(value));
    if (where.index && in.is_list() && *where.index < in.count()) return in.replace(*where.index, std::move(value));
    if (where.index && in.is_list() && *where.index == in.count()) return in.insert(*where.index, std::move(value));
    throw script_error{"The " + in.describe() + " has no place for a tag \"" + where.name + "\"."};
}

/// The group at a step, made when it is missing.
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
    const bool fits = whole >= limits::min() && whole <= limits::max();  // false for what is not a number
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

std::optional<tag_group_ref> tag_group::read_group(std::string_view path) const
{
    return held_in<tag_group_ref>(find(path));
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
    const auto place = tags_.begin() + static_cast<std::ptrdiff_t>(std::min(index, tags_.size()));
    tags_.insert(place, {std::string{}, std::move(value)});
}

void memory_tag_group::replace(std::size_t index, tag value)
{
    if (!is_list_ || index >= tags_.size()) throw script_error{"The tag list has no tag of that number."};
    tags_[index].second = std::move(value);
}

}  // namespace zentrix::host
