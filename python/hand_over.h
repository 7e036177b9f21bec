#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <exception>
#include <functional>

#include "python/interpreter_lock.h"

/// Calls handed over to the thread of the host. A process has one such thread, for all its sessions.
namespace zentrix::python {

namespace py = pybind11;

/// What is left of a call that was handed over.
struct ended_call
{
    std::exception_ptr thrown;  ///< what the work threw
    py::object cause;           ///< the Python exception that ended a callback; empty if there was none
    py::object signal;          ///< the exception of a signal handler that arrived during the call; empty if none did
};

/// Runs `work` on the host's thread, without the interpreter lock, and waits for it. Inside another call, that is in a
/// callback on that thread, it runs at once. Requires the interpreter lock, and releases it meanwhile. On Python's main
/// thread, signals are handled while it waits; if one of their handlers raises an exception, a queued call is withdrawn
/// and a running one is asked to stop.
/// Throws  host::script_error if the host cannot be used: while the interpreter ends, in a child forked during a call,
///         and if a callback of the running call has lasted so long that it seems to wait for this thread
ended_call hand_over(const std::function<void()>& work);

bool on_host_thread() noexcept;

/// Whether the running call is asked to stop. For the host's thread.
bool is_call_given_up() noexcept;

/// Ends the host's thread: refuses further calls, stops the running one if it lets itself be stopped, runs `last`. To
/// be called when the interpreter is about to end. Afterwards work that is handed over runs on the calling thread.
void end_host_thread(const std::function<void()>& last);

/// Makes forked children usable. Called once.
void register_fork_handlers();

/// To be constructed, with the interpreter lock, around Python code that runs on behalf of the library. In such code on
/// the host's thread the context variables are those of the calling thread, and Ctrl-C raises KeyboardInterrupt.
class callback_scope
{
  public:
    callback_scope();
    ~callback_scope();
    callback_scope(const callback_scope&) = delete;
    callback_scope& operator=(const callback_scope&) = delete;

  private:
    bool is_on_host_thread_;
    std::int64_t enclosing_ = 0;
};

}  // namespace zentrix::python
