#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "contract/host_link.h"

/// Binding to the host: counted references, host functions called by prototype, conversion of script calls.
namespace qorv::binding {

/// A counted reference to a host object; may be null. `adopt` takes over a reference that the host counted for us,
/// `share` adds one to an object that was lent.
///
/// A reference belongs to the host link that was current when it was made. Once that link has been replaced or removed,
/// the reference reads as null and its object is never released: the old link may be gone, and the new one does not
/// know the object.
class object_ref
{
  public:
    object_ref() = default;
    object_ref(const object_ref& other) noexcept;
    object_ref(object_ref&& other) noexcept
        : object_{std::exchange(other.object_, nullptr)}, generation_{other.generation_}
    {}
    object_ref& operator=(object_ref other) noexcept
    {
        std::swap(object_, other.object_);
        std::swap(generation_, other.generation_);
        return *this;
    }
    ~object_ref();

    host_object* get() const noexcept;
    /// Hands the reference over: the caller releases it.
    host_object* detach() noexcept;
    explicit operator bool() const noexcept { return get() != nullptr; }
    friend bool operator==(const object_ref& a, const object_ref& b) noexcept { return a.get() == b.get(); }

  protected:
    enum class counted
    {
        yes,
        no
    };
    object_ref(host_object* object, counted is_counted) noexcept;

  private:
    host_object* object_ = nullptr;
    std::uint64_t generation_ = 0;  ///< of the link that the object belongs to
};

/// A reference to an object of one kind, so that an image cannot be passed for a tag group.
template <host_kind object_kind>
class ref : public object_ref
{
  public:
    static constexpr host_kind kind = object_kind;

    ref() = default;
    static ref adopt(host_object* object) noexcept { return {object, counted::yes}; }
    static ref share(host_object* object) noexcept { return {object, counted::no}; }

  private:
    ref(host_object* object, counted is_counted) noexcept : object_ref{object, is_counted} {}
};

using image_ref = ref<HOST_IMAGE>;  ///< ImageRef, BasicImage, RealImagePtr, ComplexImagePtr
using tag_group_ref = ref<HOST_TAG_GROUP>;
using script_object_ref = ref<HOST_SCRIPT_OBJECT>;
using function_ref = ref<HOST_FUNCTION>;
using script_class_ref = ref<HOST_SCRIPT_CLASS>;
using throwable_ref = ref<HOST_THROWABLE>;
using string_ref = ref<HOST_STRING>;

/// A string object of the host with this text (UTF-8).
/// Throws  Gatan::gatan_exception when there is no host, std::bad_alloc when the host has no memory
string_ref make_string(std::string_view text);

/// The text of a string object; empty for null.
std::string text_of(const string_ref& string);

}  // namespace qorv::binding
