#include "binding/object_ref.h"

#include <new>

#include "framework/error_manager.h"
#include "framework/link.h"

namespace qorv::binding {

using Gatan::PlugIn::current_link;
using Gatan::PlugIn::link_generation;

object_ref::object_ref(host_object* object, counted is_counted) noexcept
    : object_{object}, generation_{link_generation()}
{
    host_link* link = current_link();
    if (is_counted == counted::no && object_ && link) link->table->object_add_reference(link, object_);
}

object_ref::object_ref(const object_ref& other) noexcept : object_ref{other.get(), counted::no} {}

object_ref::~object_ref()
{
    host_link* link = current_link();
    if (host_object* const object = get(); object && link) link->table->object_release(link, object);
}

host_object* object_ref::get() const noexcept { return generation_ == link_generation() ? object_ : nullptr; }

host_object* object_ref::detach() noexcept
{
    host_object* const object = get();
    object_ = nullptr;
    return object;
}

string_ref make_string(std::string_view text)
{
    host_link* link = current_link();
    if (!link) throw Gatan::gatan_exception{"There is no host."};
    host_object* string = link->table->string_new(link, text.data(), text.size());
    if (!string) throw std::bad_alloc{};
    return string_ref::adopt(string);
}

std::string text_of(const string_ref& string)
{
    host_link* link = current_link();
    if (!string || !link) return {};
    std::uint64_t length = 0;
    const char* characters = link->table->string_text(link, string.get(), &length);
    return characters ? std::string(characters, length) : std::string{};
}

}  // namespace qorv::binding
