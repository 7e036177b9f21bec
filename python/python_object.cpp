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

thread_local PyObject* kept_error = nullptr;

/// The exception with its traceback.
py::object exception_of(const py::error_already_set& raised)
{
    py::object error = raised.value();
    if (error && raised.trace()) PyException_SetTraceback(error.ptr(), raised.trace().ptr());
    return error;
}

}  // namespace

python_owner::~python_owner()
{
    if (!Py_IsInitialized()) {
        kept_.release();  // the interpreter has already destroyed the object
        return;
    }
    const interpreter_lock locked;
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
    const py::object former = take_kept_error();
    kept_error = exception_of(raised).release().ptr();
}

py::object take_kept_error() noexcept { return py::reinterpret_steal<py::object>(std::exchange(kept_error, nullptr)); }

py::object take_raised_error() { return exception_of(py::error_already_set{}); }

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
