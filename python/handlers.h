#pragma once

#include "host/objects/script_object.h"
#include "python/python_object.h"

namespace zentrix::python {

/// Any Python object as a script object: its methods are the script object's, found by name; the first argument of the
/// prototype, the script object itself, is Python's `self`.
class python_handler : public host::script_object
{
  public:
    explicit python_handler(py::handle served);

    const py::object& python_object() const { return owner_.get(); }

    /// The Python method of that name, called with `wanted`'s arguments; null when there is none. May be used with the
    /// interpreter lock or without.
    host::function_ref find_method(const std::string& name, const host::prototype& wanted) override;

  private:
    python_owner owner_;
};

/// The script object that stands for a Python object.
std::shared_ptr<python_handler> handler_of(py::handle object);

}  // namespace zentrix::python
