#include "python/python_object.h"

#include <unordered_map>

namespace zentrix::python {

namespace {

using stand_ins = std::unordered_map<PyObject*, std::weak_ptr<host::object>>;

// Never destroyed, because objects may be destroyed as late as the process.
stand_ins& the_stand_ins()
{
    static auto& all = *new stand_ins;
    return all;
}

py::object& the_kept_error()
{
    static auto& error = *new py::object;
    return error;
}

}  // namespace

python_owner::~python_owner()
{
    if (!Py_IsInitialized()) {
        kept_.release();  // the interpreter has already destroyed the object
        return;
    }
    const py::gil_scoped_acquire locked;
    const auto found = the_stand_ins().find(kept_.ptr());
    if (found != the_stand_ins().end() && found->second.expired()) the_stand_ins().erase(found);
    kept_ = py::object{};
}

host::object_ref find_stand_in(py::handle object)
{
    const auto found = the_stand_ins().find(object.ptr());
    return found == the_stand_ins().end() ? nullptr : found->second.lock();
}

void remember_stand_in(py::handle object, const host::object_ref& stand_in)
{
    the_stand_ins()[object.ptr()] = stand_in;
}

void keep_error(py::error_already_set& raised)
{
    the_kept_error() = raised.value();
    if (the_kept_error() && raised.trace()) PyException_SetTraceback(the_kept_error().ptr(), raised.trace().ptr());
}

py::object take_kept_error() { return std::exchange(the_kept_error(), py::object{}); }

std::string error_text(const py::error_already_set& raised)
{
    auto text = py::str(raised.value()).cast<std::string>();
    if (raised.matches(script_error_class())) return text;
    const auto name = raised.type().attr("__name__").cast<std::string>();
    return text.empty() ? name : name + ": " + text;
}

py::object script_error_class()
{
    static const auto& found =
        *new py::object{py::module_::import("zentrix._core").attr("ScriptError")};  // outlives the interpreter
    return found;
}

}  // namespace zentrix::python
