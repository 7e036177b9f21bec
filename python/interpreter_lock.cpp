#include "python/interpreter_lock.h"

#include <unistd.h>

namespace zentrix::python {

void stop_this_thread() noexcept
{
    for (;;) pause();
}

interpreter_lock::interpreter_lock() noexcept
{
    // After its end, Python would make a state for a thread in an interpreter that is gone.
    const bool is_main_thread = gettid() == getpid();
    if (!Py_IsInitialized() && !is_main_thread) stop_this_thread();
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
