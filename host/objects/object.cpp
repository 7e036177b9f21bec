#include "host/objects/object.h"

namespace zentrix::host {

const char* name_of(object_kind kind) noexcept
{
    switch (kind) {
        case object_kind::string: return "string";
        case object_kind::image: return "image";
        case object_kind::tag_group: return "tag group";
        case object_kind::script_object: return "script object";
        case object_kind::function: return "function";
        case object_kind::script_class: return "script class";
        case object_kind::throwable: return "throwable";
    }
    return "object";
}

}  // namespace zentrix::host
