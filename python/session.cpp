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
    const interpreter_lock locked;
    const callback_scope on_behalf_of_the_library;
    try {
        call_python(log->get(), py::make_tuple(level, text_to_python(text)));
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

int sessions_closing = 0;  // all sessions use the same loaded library, so only one at a time may run

[[noreturn]] void raise_object(const py::object& error)
{
    PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
    throw py::error_already_set{};
}

/// Raises ScriptError with the error of a callback as its cause. KeyboardInterrupt and the like are raised unchanged.
[[noreturn]] void raise_script_error(const host::script_error& stopped, const py::object& cause, const char* advice)
{
    if (cause && !py::isinstance(cause, py::handle{PyExc_Exception})) raise_object(cause);
    const py::object error = script_error_class()(text_to_python(stopped.what()));
    if (cause) PyException_SetCause(error.ptr(), py::object{cause}.release().ptr());
    if (advice && std::string_view{stopped.what()} == refused_parameters && py::hasattr(error, "add_note"))
        error.attr("add_note")(advice);  // in addition to the script's message, which stays unchanged
    raise_object(error);
}

}  // namespace

void raise_errors(const ended_call& ended, const char* advice)
{
    if (ended.signal) raise_object(ended.signal);
    if (ended.thrown) try {
            std::rethrow_exception(ended.thrown);
        } catch (const host::script_error& stopped) {
            raise_script_error(stopped, ended.cause, advice);
        }
    if (ended.cause) show_unraisable(ended.cause);
}

session::session(const std::string& file, py::object log)
{
    const auto listening = forward_to(std::make_shared<python_owner>(log));
    run_on_host_thread([&] {
        if (sessions_closing > 0) throw host::script_error{"A host cannot be started while another one is closed."};
        auto options = host::host_options(file, listening);
        options.interrupted = is_call_given_up;
        engine_ = std::make_unique<host::engine>(std::move(options));
        library_ = std::make_unique<host::library>(*engine_, file);
        is_open_ = true;
    });
}

session::~session()
{
    if (!is_open_) return;
    try {
        close();
    } catch (const std::exception&) {  // the host's thread cannot be used any more, so neither can what it has made
        (void)library_.release();
        (void)engine_.release();
    }
}

/// The engine, for a call on the host's thread. In a forked process that is another thread.
host::engine& session::usable_engine()
{
    if (!is_open_) throw host::script_error{"The library is closed."};
    if (!engine_->on_main_thread()) engine_->adopt_main_thread();
    return *engine_;
}

void session::carry_out(const std::function<void(host::engine&)>& body, const char* advice)
{
    if (!is_open_) throw host::script_error{"The library is closed."};  // even if the host's thread has ended
    run_on_host_thread(
        [&] {
            auto& engine = usable_engine();
            const counted one_more{running_calls_};
            body(engine);
        },
        advice);
}

/// Converts the arguments, runs `body(engine, values)`, converts outputs and result.
template <class Body>
py::object session::call_with(const py::args& python_arguments, Body body)
{
    if (!is_open_) throw host::script_error{"The library is closed."};
    const call_arguments arguments{python_arguments};
    const auto result = run([&](host::engine& engine) { return body(engine, arguments.values()); },
                            arguments.has_strided_array() ? advice_on_strides : nullptr);
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

std::vector<std::string> session::functions(host::origin of)
{
    return run([of](host::engine& engine) { return engine.functions().prototypes(of); });
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
    host::held_report report;
    run_on_host_thread([&] { report = engine_->report(); });
    return report;
}

void session::close()
{
    if (!is_open_) return;
    run_on_host_thread([&] {
        if (!is_open_) return;
        if (running_calls_ > 0)
            throw host::script_error{"The library cannot be closed while one of its functions runs."};
        usable_engine();
        const counted one_more{sessions_closing};
        is_open_ = false;  // finalizers of Python objects may call close() again
        std::exchange(library_, nullptr)->close();
        engine_->forget_held();
    });
}

}  // namespace zentrix::python
