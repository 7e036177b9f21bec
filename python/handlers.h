#pragma once

#include "host/objects/script_object.h"
#include "python/python_object.h"

namespace zentrix::python {

/// A Python object as a script object. Methods are found by name; the first argument of their prototypes, the script
/// object itself, is Python's `self`.
class python_handler : public host::script_object
{
  public:
    explicit python_handler(py::handle owned);

    const py::object& python_object() const { return owner_.get(); }

    /// The Python method of this name, to be called with the arguments of `signature`; null if there is none. May be
    /// called with or without the interpreter lock.
    host::function_ref find_method(const std::string& name, const host::prototype& signature) override;

  private:
    python_owner owner_;
};

/// The script object that represents a Python object.
std::shared_ptr<python_handler> handler_of(py::handle object);

}  // namespace zentrix::python
