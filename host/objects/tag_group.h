#pragma once

#include "host/objects/object.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zentrix::host {

class tag_group;
using tag_group_ref = std::shared_ptr<tag_group>;

/// A tag's value: a long, a float (or a double, from backings that have no float), a text, a group or list.
using tag = std::variant<std::int32_t, float, double, std::string, tag_group_ref>;

/// As it stands in a log: 3, 0.25, "text", tag group of 2, tag list of 2.
std::string text_of(const tag& value);

/// A group of named tags, or a list of tags by number. Paths join names by colons; "[2]" stands for the third tag:
/// "Zentrix:Pages:[2]:Title". Names keep their case.
///
/// The virtual functions deal with the group's own tags only; all that paths and conversions need is done on top of
/// them, so another language's dictionary can serve by overriding these six.
class tag_group : public object
{
  public:
    tag_group() : object{object_kind::tag_group} {}

    virtual bool is_list() const = 0;
    virtual std::size_t count() const = 0;
    /// The tag of that name; nothing when there is none, and always for a list.
    virtual std::optional<tag> get(const std::string& name) const = 0;
    /// The tag of that number in the group's order; nothing beyond the end.
    virtual std::optional<tag> get_at(std::size_t index) const = 0;
    /// The name of the tag of that number; empty in a list and beyond the end.
    virtual std::string name_at(std::size_t index) const = 0;
    /// Sets or replaces the tag of that name; for groups only.
    virtual void set(const std::string& name, tag value) = 0;
    /// Puts a tag before number `index` (or at the end, from count() on), or replaces that number; for lists only.
    virtual void insert(std::size_t index, tag value) = 0;
    virtual void replace(std::size_t index, tag value) = 0;

    /// The tag at a path; nothing when a part of it is missing.
    std::optional<tag> find(std::string_view path) const;

    /// Read with conversion: a number as any other kind of number (a fraction is cut off for a long), a text as a text,
    /// a group as a group. Nothing when the tag is missing, is of another kind, or does not fit.
    std::optional<std::int32_t> read_long(std::string_view path) const;
    std::optional<float> read_float(std::string_view path) const;
    std::optional<std::string> read_string(std::string_view path) const;
    std::optional<tag_group_ref> read_group(std::string_view path) const;

    /// Writes the tag at a path, making the groups on the way, then calls the listener.
    /// Throws  script_error when a part of the path is no group, or a list has no such number
    void write(std::string_view path, tag value);

    /// Called after each write through this group, with the path as it was given.
    using listener = std::function<void(std::string_view path, const tag& value)>;
    void on_write(listener told) { listener_ = std::move(told); }

    std::string describe() const override;

  private:
    listener listener_;
};

/// The host's own groups and lists, in memory.
/// Throws  script_error from set on a list and from insert and replace on a group
class memory_tag_group : public tag_group
{
  public:
    static tag_group_ref make_group();
    static tag_group_ref make_list();

    explicit memory_tag_group(bool is_list) : is_list_{is_list} {}
    bool is_list() const override { return is_list_; }
    std::size_t count() const override { return tags_.size(); }
    std::optional<tag> get(const std::string& name) const override;
    std::optional<tag> get_at(std::size_t index) const override;
    std::string name_at(std::size_t index) const override;
    void set(const std::string& name, tag value) override;
    void insert(std::size_t index, tag value) override;
    void replace(std::size_t index, tag value) override;

  private:
    bool is_list_;
    std::vector<std::pair<std::string, tag>> tags_;  // in the order of their first writing; a list's names are empty
};

}  // namespace zentrix::host
