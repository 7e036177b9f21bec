#include "python/interpreter_lock.h"

#include <unistd.h>

namespace zentrix::python {

void stop_this_thread() noexcept
{
    for (;;) pause();
}

interpreter_lock::interpreter_lock() noexcept
{
    try {
        state_ = PyGILState_Ensure();
    } catch (...) {  // the unwinding of a thread that Python ends
        stop_this_thread();
    }
}

interpreter_unlock::~interpreter_unlock()
{
    try {
        PyEval_RestoreThread(state_);
    } catch (...) {  // the unwinding of a thread that Python ends
        stop_this_thread();
    }
}

pybind11::object call_python(pybind11::handle function, pybind11::handle arguments)
{
    PyObject* result = nullptr;
    try {
        result = PyObject_CallObject(function.ptr(), arguments.ptr());
    } catch (...) {  // the unwinding of a thread that Python ends
        stop_this_thread();
    }
    if (!result) throw pybind11::error_already_set{};
    return pybind11::reinterpret_steal<pybind11::object>(result);
}

}  // namespace zentrix::python
