#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <string>
#include <utility>

#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "python/python_object.h"

namespace zentrix::python {

/// The stand-alone host with the library running in it. The thread that creates a session is the host's main thread; on
/// other threads all functions except `traces` fail. All functions require the interpreter lock; `call` releases it
/// while the library computes.
class session
{
  public:
    /// `log(level, text)` receives the library's errors ("error"), dialogs ("warning") and output ("info").
    /// Throws  host::script_error when the library does not start, or while another session is being closed
    session(const std::string& file, py::object log);
    ~session();
    session(const session&) = delete;
    session& operator=(const session&) = delete;

    bool is_open() const noexcept { return library_ != nullptr; }

    /// Calls a script function. See call_arguments for the conversions.
    /// Throws  host::script_error with the script's message, caused by the exception of a callback if there is one; the
    ///         exceptions of the conversions
    py::object call(const std::string& name, const py::args& arguments);

    /// Calls a method of a Python object as the library does, by its prototype.
    /// Throws  as call
    py::object call_method(py::handle object, const std::string& prototype, const py::args& arguments);

    /// The library's prototypes in the order of registration.
    std::vector<std::string> functions() const;
    /// counter name -> (reports, ticks)
    py::dict traces() const;
    /// The objects that the library holds. None after close: the host then releases those that remain.
    host::held_report held() const;

    /// Shuts the library down. Does nothing if it is closed or being closed.
    /// Throws  host::script_error while a script function runs
    void close();

    /// Runs `body(host::engine&)`, which calls the library, with the interpreter lock released.
    /// Throws  as call; `advice` becomes the exception's note if the library refuses its parameters. The exception of a
    ///         signal handler that stopped the call, such as KeyboardInterrupt, is raised unchanged
    template <class Body>
    auto run(Body body, const char* advice = nullptr)
    {
        require_usable();
        const counted one_more{running_calls_};
        interrupted_ = false;
        try {
            const py::gil_scoped_release others_may_run;
            return body(*engine_);
        } catch (const host::script_error& stopped) {
            raise(stopped, advice, std::exchange(interrupted_, false));
        }
    }

  private:
    /// Increments a counter for its lifetime.
    class counted
    {
      public:
        explicit counted(int& counter) : counter_{counter} { ++counter_; }
        ~counted() { --counter_; }
        counted(const counted&) = delete;
        counted& operator=(const counted&) = delete;

      private:
        int& counter_;
    };

    template <class Body>
    py::object call_with(const py::args& python_arguments, Body body);
    void require_main_thread() const;
    void require_usable() const;
    bool is_interrupted();
    [[noreturn]] static void raise(const host::script_error& stopped, const char* advice, bool interrupted);

    std::unique_ptr<host::engine> engine_;
    std::unique_ptr<host::library> library_;
    int running_calls_ = 0;
    bool interrupted_ = false;  ///< the kept error comes from a signal that stopped the running call
};

}  // namespace zentrix::python
