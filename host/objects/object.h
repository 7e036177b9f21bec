#pragma once

#include "contract/host_link.h"

#include <memory>
#include <string>

namespace zentrix::host {

/// What a host object is; the numbers are those of the contract's kinds.
enum class object_kind : std::uint32_t
{
    string = HOST_STRING,
    image = HOST_IMAGE,
    tag_group = HOST_TAG_GROUP,
    script_object = HOST_SCRIPT_OBJECT,
    function = HOST_FUNCTION,
    script_class = HOST_SCRIPT_CLASS,
    throwable = HOST_THROWABLE
};

/// "image", "tag group", ...: for messages.
const char* name_of(object_kind kind) noexcept;

/// Base of everything that a script or the library can hold a reference to. On the host's side objects live in
/// std::shared_ptr; the references that the library holds are counted apart, in the engine's handle_table, so that
/// what the library forgot to release can be told from what a caller still uses.
class object : public std::enable_shared_from_this<object>
{
  public:
    explicit object(object_kind kind) noexcept : kind_{kind} {}
    virtual ~object() = default;
    object(const object&) = delete;
    object& operator=(const object&) = delete;

    object_kind kind() const noexcept { return kind_; }
    /// One line for reports: the kind and what tells this object from others.
    virtual std::string describe() const { return name_of(kind_); }

  private:
    object_kind kind_;
};

using object_ref = std::shared_ptr<object>;

/// A string as it crosses the contract. Scripts see std::string.
class string_object : public object
{
  public:
    explicit string_object(std::string text) : object{object_kind::string}, text_{std::move(text)} {}
    const std::string& text() const noexcept { return text_; }
    std::string describe() const override { return "string \"" + text_ + "\""; }

  private:
    std::string text_;
};

/// An error on its way to a script.
class throwable : public object
{
  public:
    explicit throwable(std::string text) : object{object_kind::throwable}, text_{std::move(text)} {}
    const std::string& text() const noexcept { return text_; }
    std::string describe() const override { return "throwable \"" + text_ + "\""; }

  private:
    std::string text_;
};

}  // namespace zentrix::host
