#pragma once

#include "host/objects/tag_group.h"
#include "python/python_object.h"

/// Python mappings and sequences as the host's tag groups and lists, and vice versa.
namespace zentrix::python {

/// A tag group or list of the host in Python; the base of zentrix.TagGroup and zentrix.TagList.
struct tags_view
{
    host::tag_group_ref held;
};

/// Whether a Python object can be used as tags: a mapping, or a sequence other than text.
bool is_tags(py::handle object);

/// The tags that represent a mapping or sequence. They are read from and written to the Python object itself.
host::tag_group_ref tags_of(py::handle object);

/// The Python object that the tags represent, or a TagGroup or TagList over tags of the host.
py::object tags_to_python(const host::tag_group_ref& tags);

/// Converts a tag to and from Python. Returns nothing for values that a tag cannot hold: None, arrays, complex numbers.
/// Integers beyond 32 bits become real numbers.
py::object tag_to_python(const host::tag& value);
std::optional<host::tag> tag_from_python(py::handle value);

}  // namespace zentrix::python
