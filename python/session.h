#pragma once

#include <pybind11/pybind11.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "python/python_object.h"

namespace zentrix::python {

/// Raises in Python what ended a call: the exception of a signal handler unchanged, a host::script_error as ScriptError
/// with the exception of a callback as its cause, other exceptions of C++ as they are. Reports the exception of a
/// callback that the library ignored as unraisable.
/// advice   becomes the exception's note if the library refuses its parameters
void raise_errors(const ended_call& ended, const char* advice = nullptr);

/// Runs `work` on the host's thread. See hand_over.
inline void run_on_host_thread(const std::function<void()>& work, const char* advice = nullptr)
{
    raise_errors(hand_over(work), advice);
}

/// The stand-alone host with the library running in it. All functions may be called on any thread and require the
/// interpreter lock. They wait for the host's thread without it, except `traces` and `is_open`, which do not wait.
class session
{
  public:
    /// `log(level, text)` receives the library's errors ("error"), dialogs ("warning") and output ("info").
    /// Throws  host::script_error when the library does not start, or while another session is being closed
    session(const std::string& file, py::object log);
    /// Closes the session if it is open.
    ~session();
    session(const session&) = delete;
    session& operator=(const session&) = delete;

    bool is_open() const noexcept { return is_open_; }

    /// Calls a script function. See call_arguments for the conversions.
    /// Throws  host::script_error with the script's message, caused by the exception of a callback if there is one; the
    ///         exceptions of the conversions
    py::object call(const std::string& name, const py::args& arguments);

    /// Calls a method of a Python object as the library does, by its prototype.
    /// Throws  as call
    py::object call_method(py::handle object, const std::string& prototype, const py::args& arguments);

    /// The prototypes of the library, or of the host, in the order of registration.
    std::vector<std::string> functions(host::origin of);
    /// counter name -> (reports, ticks)
    py::dict traces() const;
    /// The objects that the library holds. None after close: the host then releases those that remain.
    host::held_report held() const;

    /// Shuts the library down, after the calls that were handed over before. Does nothing if it is closed or being
    /// closed.
    /// Throws  host::script_error inside a call of a script function
    void close();

    /// Runs `body(host::engine&)`, which calls the library, on the host's thread without the interpreter lock.
    /// Throws  as raise_errors; host::script_error if the session is closed
    template <class Body>
    auto run(Body body, const char* advice = nullptr)
    {
        using result_type = std::invoke_result_t<Body&, host::engine&>;
        if constexpr (std::is_void_v<result_type>) {
            carry_out(body, advice);
        } else {
            std::optional<result_type> result;
            carry_out([&](host::engine& engine) { result.emplace(body(engine)); }, advice);
            return *std::move(result);
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
    host::engine& usable_engine();
    void carry_out(const std::function<void(host::engine&)>& body, const char* advice);

    std::unique_ptr<host::engine> engine_;
    std::unique_ptr<host::library> library_;
    std::atomic<bool> is_open_ = false;
    int running_calls_ = 0;  ///< counted on the host's thread
};

}  // namespace zentrix::python
