#pragma once

#include <pybind11/pybind11.h>

/// The interpreter lock, acquired and released so that threads survive the end of the interpreter. Python then ends
/// each other thread that asks for the lock by unwinding its stack, which terminates the process if a destructor is on
/// the way. Such a thread waits here instead, until the process has ended.
namespace zentrix::python {

/// Stops the calling thread for good.
[[noreturn]] void stop_this_thread() noexcept;

/// Holds the interpreter lock for its lifetime, on any thread, whether the thread holds it already or not.
class interpreter_lock
{
  public:
    interpreter_lock() noexcept;
    ~interpreter_lock() { PyGILState_Release(state_); }
    interpreter_lock(const interpreter_lock&) = delete;
    interpreter_lock& operator=(const interpreter_lock&) = delete;

  private:
    PyGILState_STATE state_;
};

/// Releases the interpreter lock, which the thread must hold, for its lifetime.
class interpreter_unlock
{
  public:
    interpreter_unlock() noexcept : state_{PyEval_SaveThread()} {}
    ~interpreter_unlock();
    interpreter_unlock(const interpreter_unlock&) = delete;
    interpreter_unlock& operator=(const interpreter_unlock&) = delete;

  private:
    PyThreadState* state_;
};

/// Calls a Python function. Requires the lock. The thread stops if the interpreter ends during the call.
/// Throws  py::error_already_set
pybind11::object call_python(pybind11::handle function, pybind11::handle arguments);

}  // namespace zentrix::python
