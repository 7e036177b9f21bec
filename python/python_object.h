#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <utility>

#include "host/objects/object.h"
#include "host/objects/value.h"

/// What the host's objects and Python's share. Functions need the interpreter lock unless they say that they take it.
namespace zentrix::python {

namespace py = pybind11;

/// Keeps a Python object for a host object that stands for it. May be destroyed on any thread, with the interpreter
/// lock or without.
class python_owner
{
  public:
    explicit python_owner(py::handle kept) : kept_{py::reinterpret_borrow<py::object>(kept)} {}
    ~python_owner();
    python_owner(const python_owner&) = delete;
    python_owner& operator=(const python_owner&) = delete;

    const py::object& get() const noexcept { return kept_; }

  private:
    py::object kept_;
};

/// The host object that stands for this Python object and is still in use; null when there is none. One Python object
/// is one host object at a time, so that the library sees a source that is its own destination as such.
host::object_ref find_stand_in(py::handle object);

/// Makes `stand_in`, which has to keep `object` by a python_owner, the one to be found.
void remember_stand_in(py::handle object, const host::object_ref& stand_in);

/// Keeps the Python error that stopped a callback until the script call that it happened in ends.
void keep_error(py::error_already_set& raised);

/// The error kept since the last take: the exception, or none.
py::object take_kept_error();

/// "ZeroDivisionError: division by zero"; the bare text for a ScriptError, which has been through here already.
std::string error_text(const py::error_already_set& raised);

/// The class zentrix.ScriptError.
py::object script_error_class();

/// Runs Python code on behalf of the library: takes the interpreter lock, turns a Python exception into a script_error.
template <class Body>
auto call_back(Body body) -> decltype(body())
{
    const py::gil_scoped_acquire locked;
    try {
        return body();
    } catch (py::error_already_set& raised) {
        const auto text = error_text(raised);
        keep_error(raised);
        throw host::script_error{text};
    }
}

}  // namespace zentrix::python
