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

/// The value of a tag: a long, a float, a double (from implementations that have no float), a text, a group or a list.
using tag = std::variant<std::int32_t, float, double, std::string, tag_group_ref>;

/// The value for logs: 3, 0.25, "text", tag group of 2, tag list of 2.
std::string text_of(const tag& value);

/// A group of named tags, or a list of numbered tags. A path joins names with colons; "[2]" is the third tag:
/// "Zentrix:Pages:[2]:Title". Names are case-sensitive.
///
/// The virtual functions handle the group's own tags. Paths and conversions build on them, so that a class which
/// represents a dictionary of another language needs to override only these functions.
class tag_group : public object
{
  public:
    tag_group() : object{object_kind::tag_group} {}

    virtual bool is_list() const = 0;
    virtual std::size_t count() const = 0;
    /// The tag of that name; empty when there is none, and for a list.
    virtual std::optional<tag> get(const std::string& name) const = 0;
    /// The tag of that number in the group's order; empty past the end.
    virtual std::optional<tag> get_at(std::size_t index) const = 0;
    /// The name of the tag of that number; empty in a list and past the end.
    virtual std::string name_at(std::size_t index) const = 0;
    /// Sets or replaces the tag of that name. Groups only.
    virtual void set(const std::string& name, tag value) = 0;
    /// Inserts a tag before number `index`; an index of count() or more appends. Lists only.
    virtual void insert(std::size_t index, tag value) = 0;
    /// Replaces the tag of that number. Lists only.
    virtual void replace(std::size_t index, tag value) = 0;

    /// The tag at a path; empty when a part of the path does not exist.
    std::optional<tag> find(std::string_view path) const;

    /// The tag at a path, converted: a number to another kind of number (a long loses the fraction), a text to a text.
    /// Empty when the tag does not exist, is of another kind, or is out of range.
    std::optional<std::int32_t> read_long(std::string_view path) const;
    std::optional<float> read_float(std::string_view path) const;
    std::optional<std::string> read_string(std::string_view path) const;

    /// Writes the tag at a path, creates missing groups on the way, then calls the listener.
    /// Throws  script_error when a part of the path is not a group, or a list has no such number
    void write(std::string_view path, tag value);

    /// Sets the listener, called after each `write` to this group with the path that was passed.
    using listener = std::function<void(std::string_view path, const tag& value)>;
    void on_write(listener called) { listener_ = std::move(called); }

    std::string describe() const override;

  private:
    listener listener_;
};

/// A group or list of the host, in memory. Groups may be nested to any depth.
/// Throws  script_error from set on a list and from insert and replace on a group; also when a group or list would
///         contain itself, directly or inside others (groups of another language in between are not searched)
class memory_tag_group : public tag_group
{
  public:
    static tag_group_ref make_group();
    static tag_group_ref make_list();

    explicit memory_tag_group(bool is_list) : is_list_{is_list} {}
    ~memory_tag_group() override;
    bool is_list() const override { return is_list_; }
    std::size_t count() const override { return tags_.size(); }
    std::optional<tag> get(const std::string& name) const override;
    std::optional<tag> get_at(std::size_t index) const override;
    std::string name_at(std::size_t index) const override;
    void set(const std::string& name, tag value) override;
    void insert(std::size_t index, tag value) override;
    void replace(std::size_t index, tag value) override;

  private:
    void require_no_cycle(const tag& added);
    bool is_inside(const memory_tag_group& outer) const;

    bool is_list_;
    bool was_nested_ = false;                            // put into another group at some time
    std::shared_ptr<memory_tag_group> next_to_destroy_;  // links the groups that a destructor has still to destroy
    std::vector<std::pair<std::string, tag>> tags_;      // in order of creation; names are empty in a list
};

}  // namespace zentrix::host
