#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <utility>

#include "host/objects/object.h"
#include "host/objects/value.h"
#include "python/hand_over.h"

/// The relation between objects of the host and of Python. Functions require the interpreter lock unless they acquire
/// it.
namespace zentrix::python {

/// Owns a Python object on behalf of the host object that represents it. May be destroyed on any thread, with or
/// without the interpreter lock.
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

/// The host object that represents this Python object, if one is in use; else null. At any time one Python object is
/// represented by one host object, so that the library recognises a source that is also the destination.
host::object_ref find_stand_in(py::handle object);

/// Makes find_stand_in(object) return `stand_in`, which has to own `object` by a python_owner.
void remember_stand_in(py::handle object, const host::object_ref& stand_in);

/// Stores the Python exception that ended a callback until the enclosing script call ends, for the calling thread.
void keep_error(py::error_already_set& raised);

/// Removes and returns the exception that this thread has stored; empty if there is none. Does not require the
/// interpreter lock.
py::object take_kept_error() noexcept;

/// Removes and returns the exception that Python has raised on this thread, with its traceback.
py::object take_raised_error();

/// "ZeroDivisionError: division by zero"; only the text for a ScriptError, which already includes the class.
std::string error_text(const py::error_already_set& raised);

/// The class zentrix.ScriptError.
py::object script_error_class();

/// Runs Python code for the library: acquires the interpreter lock and converts a Python exception to a script_error.
template <class Body>
auto call_back(Body body) -> decltype(body())
{
    const interpreter_lock locked;
    const callback_scope on_behalf_of_the_library;
    try {
        return body();
    } catch (py::error_already_set& raised) {
        const auto text = error_text(raised);
        keep_error(raised);
        throw host::script_error{text};
    }
}

}  // namespace zentrix::python
