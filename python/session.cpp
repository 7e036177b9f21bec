#include "python/session.h"

#include "host/setup/host_options.h"
#include "python/handlers.h"
#include "python/values.h"

namespace zentrix::python {

namespace {

/// The error text of functions that require contiguous arrays, among others.
constexpr char refused_parameters[] = "Parameters are invalid.";
constexpr char advice_on_strides[] =
    "An argument is an array that is not C-contiguous, which some functions do not support: pass "
    "numpy.ascontiguousarray() of it.";

/// Passes a message of the host to Python's logger. An exception of the logger is reported as unraisable.
void pass_to_log(const std::shared_ptr<python_owner>& log, const char* level, const std::string& text)
{
    const py::gil_scoped_acquire locked;
    try {
        log->get()(level, text_to_python(text));
    } catch (py::error_already_set& raised) {
        raised.discard_as_unraisable("zentrix");
    }
}

host::listeners forward_to(const std::shared_ptr<python_owner>& log)
{
    host::listeners listening;
    listening.error = [log](const host::error_record& error) { pass_to_log(log, "error", error.text); };
    listening.dialog = [log](const host::dialog_record& shown) { pass_to_log(log, "warning", shown.text); };
    listening.output = [log](const host::output_record& line) { pass_to_log(log, "info", line.text); };
    return listening;
}

/// Shows the error of a callback that the library ignored.
void show_unraisable(const py::object& error)
{
    PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
    PyErr_WriteUnraisable(nullptr);
}

/// On no other thread does Python handle signals.
bool on_python_main_thread()
{
    const auto threading = py::module_::import("threading");
    return threading.attr("current_thread")().is(threading.attr("main_thread")());
}

int sessions_closing = 0;  // all sessions use the same loaded library, so only one at a time may run

}  // namespace

session::session(const std::string& file, py::object log)
{
    if (sessions_closing > 0) throw host::script_error{"A host cannot be started while another one is closed."};
    auto options = host::host_options(file, forward_to(std::make_shared<python_owner>(log)));
    if (on_python_main_thread()) options.interrupted = [this] { return is_interrupted(); };
    engine_ = std::make_unique<host::engine>(std::move(options));
    library_ = std::make_unique<host::library>(*engine_, file);
}

session::~session()
{
    if (library_ && engine_->on_main_thread()) close();
}

void session::require_main_thread() const
{
    if (!engine_->on_main_thread())
        throw host::script_error{"Scripts run on the host's main thread only, the one that called zentrix.load()."};
}

void session::require_usable() const
{
    require_main_thread();
    if (!is_open()) throw host::script_error{"The library is closed."};
}

/// Runs the handlers of the signals that have arrived. Returns whether one of them raised an exception, which is kept.
bool session::is_interrupted()
{
    const py::gil_scoped_acquire locked;
    if (PyErr_CheckSignals() == 0) return false;
    py::error_already_set raised;
    keep_error(raised);
    return interrupted_ = true;
}

/// Raises ScriptError with the error of a callback as its cause. The exception of a signal handler, KeyboardInterrupt
/// and the like are raised unchanged.
void session::raise(const host::script_error& stopped, const char* advice, bool interrupted)
{
    const py::object cause = take_kept_error();
    if (cause && (interrupted || !py::isinstance(cause, py::handle{PyExc_Exception}))) {
        PyErr_SetObject(py::type::of(cause).ptr(), cause.ptr());
        throw py::error_already_set{};
    }
    const py::object error = script_error_class()(text_to_python(stopped.what()));
    if (cause) PyException_SetCause(error.ptr(), py::object{cause}.release().ptr());
    if (advice && std::string_view{stopped.what()} == refused_parameters && py::hasattr(error, "add_note"))
        error.attr("add_note")(advice);  // in addition to the script's message, which stays unchanged
    PyErr_SetObject(script_error_class().ptr(), error.ptr());
    throw py::error_already_set{};
}

/// Converts the arguments, runs `body(engine, values)`, converts outputs and result.
template <class Body>
py::object session::call_with(const py::args& python_arguments, Body body)
{
    require_usable();
    const call_arguments arguments{python_arguments};
    const auto result = run([&](host::engine& engine) { return body(engine, arguments.values()); },
                            arguments.has_strided_array() ? advice_on_strides : nullptr);
    if (const auto ignored = take_kept_error()) show_unraisable(ignored);
    arguments.store_outputs();
    return arguments.to_python(result);
}

py::object session::call(const std::string& name, const py::args& arguments)
{
    return call_with(arguments, [&](host::engine& engine, const auto& values) { return engine.call(name, values); });
}

py::object session::call_method(py::handle object, const std::string& prototype, const py::args& arguments)
{
    const auto self = handler_of(object);
    return call_with(arguments,
                     [&](host::engine&, const auto& values) { return host::call_method(self, prototype, values); });
}

std::vector<std::string> session::functions() const
{
    require_usable();
    return engine_->functions().prototypes(host::origin::library);
}

py::dict session::traces() const
{
    py::dict all;
    for (const auto& [name, counter] : engine_->records().traces())
        all[text_to_python(name)] = py::make_tuple(counter.reports, counter.ticks);
    return all;
}

host::held_report session::held() const
{
    require_main_thread();
    try {
        return engine_->report();
    } catch (const host::script_error& stopped) {
        raise(stopped, nullptr, false);
    }
}

void session::close()
{
    require_main_thread();
    if (!is_open()) return;
    if (running_calls_ > 0) throw host::script_error{"The library cannot be closed while one of its functions runs."};
    const counted one_more{sessions_closing};
    std::exchange(library_, nullptr)->close();  // no longer open: finalizers of Python objects may call close() again
    engine_->forget_held();
}

}  // namespace zentrix::python
