#pragma once

#include "contract/host_link.h"

#include <memory>
#include <string>

namespace zentrix::host {

/// The class of a host object, numbered as the contract's kinds.
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

/// True for kinds whose plain form is a counted host object, strings included.
constexpr bool is_counted(host_kind kind) noexcept { return kind >= HOST_STRING && kind <= HOST_THROWABLE; }

/// True for kinds that scripts hold as objects. A string is a counted object to the library but a text to scripts.
constexpr bool is_object(host_kind kind) noexcept { return is_counted(kind) && kind != HOST_STRING; }

/// Base of all objects that a script or the library can refer to. The host keeps them in std::shared_ptr. The library's
/// references are counted separately, in the engine's handle_table, which distinguishes an object that the library
/// forgot to release from one that a caller still uses.
class object : public std::enable_shared_from_this<object>
{
  public:
    explicit object(object_kind kind) noexcept : kind_{kind} {}
    virtual ~object() = default;
    object(const object&) = delete;
    object& operator=(const object&) = delete;

    object_kind kind() const noexcept { return kind_; }
    /// One line for reports: the kind and a name or other distinction.
    virtual std::string describe() const { return name_of(kind_); }

  private:
    object_kind kind_;
};

using object_ref = std::shared_ptr<object>;

/// A string of the contract. Scripts use std::string.
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
