#pragma once

#include "host/objects/tag_group.h"
#include "python/python_object.h"

/// Python's dictionaries and lists as the host's tag groups and lists, and back.
namespace zentrix::python {

/// The host's own tag group or list in Python; zentrix.TagGroup and zentrix.TagList are made of it.
struct tags_view
{
    host::tag_group_ref held;
};

/// Whether a Python object can serve as tags: a mapping, or a sequence other than text.
bool is_tags(py::handle object);

/// The tags that a mapping or sequence stands for: reads and writes go to the Python object itself.
host::tag_group_ref tags_of(py::handle object);

/// The Python object that the tags stand for, or a TagGroup or TagList over the host's own tags.
py::object tags_to_python(const host::tag_group_ref& tags);

/// A tag for Python, and from it. Nothing for what no tag can hold: None, arrays, complex numbers.
/// A whole number beyond 32 bits becomes a real number.
py::object tag_to_python(const host::tag& value);
std::optional<host::tag> tag_from_python(py::handle value);

}  // namespace zentrix::python
