#pragma once

#include <utility>
#include <vector>

#include "host/objects/image.h"
#include "host/objects/value.h"
#include "python/arrays.h"
#include "python/python_object.h"

/// Python values as script values and back.
namespace zentrix::python {

/// Whether it is an output parameter, a zentrix.Ref.
bool is_reference(py::handle object);

/// What one script call got from Python. Each Ref becomes one cell and each array one image, however often it is given.
class call_arguments
{
  public:
    /// Converts by the Python type alone; the host converts on by the prototype:
    ///     None                     nothing
    ///     whole numbers, bool      integer; beyond 64 bits a real number, so that only a whole-number type refuses it
    ///     other numbers            real number, complex number
    ///     str, path                text
    ///     Ref                      output parameter holding the Ref's value
    ///     numpy.ndarray            image, see image_of
    ///     mapping; list, tuple     tag group; tag list
    ///     any other object         script object
    /// Throws  what image_of throws; py::type_error for bytes
    explicit call_arguments(const py::args& given);

    const std::vector<host::script_value>& values() const noexcept { return values_; }

    /// Puts what the cells hold now into the Refs.
    void store_outputs() const;

    /// Whether an argument is an array with gaps or of another order than rows.
    bool has_scattered_array() const;

    /// A script value for Python: an image that an argument's array shows becomes that very array.
    py::object to_python(const host::script_value& value) const;

  private:
    host::script_value from_python(py::handle given);
    host::script_value cell_for(py::handle given);

    std::vector<host::script_value> values_;
    std::vector<std::pair<py::array, host::image_ref>> arrays_;
    std::vector<std::pair<py::object, host::cell_ref>> references_;
};

/// The result of a Python method, for the library. Throws  as call_arguments
host::script_value result_from_python(py::handle given);

/// An argument of a Python method, from the library.
py::object argument_to_python(const host::script_value& value);

/// Text between Python and UTF-8. Bytes that are no UTF-8, as file names may have, survive the way there and back.
std::string text_from_python(py::handle text);
py::str text_to_python(const std::string& text);

}  // namespace zentrix::python
