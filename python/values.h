#pragma once

#include <utility>
#include <vector>

#include "host/objects/image.h"
#include "host/objects/value.h"
#include "python/arrays.h"
#include "python/python_object.h"

/// Conversion between Python values and script values.
namespace zentrix::python {

/// Whether the object is a zentrix.Ref, an output parameter.
bool is_reference(py::handle object);

/// The arguments of one script call. Each Ref becomes one cell and each array one image, however often it is passed.
class call_arguments
{
  public:
    /// Converts by the Python type alone. The host then converts to the types of the prototype.
    ///     None                     null
    ///     integers, bool           integer; beyond 64 bits a real number, so that only integer parameters refuse it
    ///     other numbers            real number, complex number
    ///     str, path                text
    ///     Ref                      output parameter with the Ref's value
    ///     numpy.ndarray            image, see image_of
    ///     mapping; list, tuple     tag group; tag list
    ///     any other object         script object
    /// Throws  as image_of; py::type_error for bytes; host::script_error for a text with a NUL character; the
    ///         exceptions of the objects' own methods
    explicit call_arguments(const py::args& arguments);

    const std::vector<host::script_value>& values() const noexcept { return values_; }

    /// Copies the values of the cells to the Refs.
    void store_outputs() const;

    /// Whether an argument is an array that is not C-contiguous.
    bool has_strided_array() const;

    /// Converts a result for Python. The image of an argument becomes that same array.
    py::object to_python(const host::script_value& value) const;

  private:
    host::script_value from_python(py::handle argument);
    host::script_value cell_for(py::handle reference);

    std::vector<host::script_value> values_;
    std::vector<std::pair<py::array, host::image_ref>> arrays_;
    std::vector<std::pair<py::object, host::cell_ref>> references_;
};

/// Looks up the Python classes that conversions need. To be called once, while the package is imported: later, one
/// thread could hold the interpreter lock and wait for the look-up of another thread, which waits for the lock.
void look_up_classes();

/// Converts the result of a Python method for the library.
/// Throws  as call_arguments
host::script_value result_from_python(py::handle result);

/// Converts an argument from the library for a Python method.
py::object argument_to_python(const host::script_value& value);

/// Conversion between Python's text and UTF-8. Bytes that are not valid UTF-8, which file names may contain, are
/// preserved in both directions.
std::string text_from_python(py::handle text);
py::str text_to_python(const std::string& text);

}  // namespace zentrix::python
