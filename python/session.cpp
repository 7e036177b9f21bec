#include "python/session.h"

#include <filesystem>

#include "host/files/image_file.h"
#include "host/system_path.h"
#include "python/values.h"

namespace zentrix::python {

namespace {

/// The library misses its companion package, a file beside it that brings the panel's handler, with a dialog at each
/// start. Here a handler is a Python object, so the package is vouched for.
bool exists_or_is_companion(const std::string& path)
{
    std::error_code unreadable;
    return path.ends_with(".gtk") || std::filesystem::exists(host::system_path(path), unreadable);
}

/// What the host has to say goes to Python; trouble there stops nothing here.
void tell(const std::shared_ptr<python_owner>& log, const char* level, const std::string& text)
{
    const py::gil_scoped_acquire locked;
    try {
        log->get()(level, text_to_python(text));
    } catch (py::error_already_set& raised) {
        raised.discard_as_unraisable("zentrix");
    }
}

host::engine_options options_with(const std::shared_ptr<python_owner>& log)
{
    host::engine_options options;
    options.file_exists = exists_or_is_companion;
    options.open_image = [](const std::string& path) { return host::read_image(host::system_path(path)); };
    options.listening.error = [log](const host::error_record& error) { tell(log, "error", error.text); };
    options.listening.dialog = [log](const host::dialog_record& shown) { tell(log, "warning", shown.text); };
    options.listening.output = [log](const host::output_record& line) { tell(log, "info", line.text); };
    return options;
}

/// A callback failed and the library went on regardless: Python shows the error, as nobody else would.
void show(const py::object& swallowed)
{
    PyErr_SetObject(py::type::of(swallowed).ptr(), swallowed.ptr());
    PyErr_WriteUnraisable(nullptr);
}

}  // namespace

session::session(const std::string& file, py::object log)
    : engine_{std::make_unique<host::engine>(options_with(std::make_shared<python_owner>(log)))},
      library_{std::make_unique<host::library>(*engine_, file)}
{}

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

/// Raises ScriptError with the error of a callback as its cause; KeyboardInterrupt and the like go on as they are.
void session::raise(const host::script_error& stopped)
{
    const py::object cause = take_kept_error();
    if (!cause) throw stopped;
    if (!py::isinstance(cause, py::handle{PyExc_Exception})) {
        PyErr_SetObject(py::type::of(cause).ptr(), cause.ptr());
        throw py::error_already_set{};
    }
    const py::object error = script_error_class()(text_to_python(stopped.what()));
    PyException_SetCause(error.ptr(), py::object{cause}.release().ptr());
    PyErr_SetObject(script_error_class().ptr(), error.ptr());
    throw py::error_already_set{};
}

py::object session::call(const std::string& name, const py::args& given)
{
    require_usable();
    const call_arguments arguments{given};
    const auto answer = run([&](host::engine& engine) { return engine.call(name, arguments.values()); });
    if (const auto swallowed = take_kept_error()) show(swallowed);
    arguments.store_outputs();
    return arguments.to_python(answer);
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
    return is_open() ? engine_->report() : left_;
}

void session::close()
{
    require_main_thread();
    if (!is_open()) return;
    if (running_calls_ > 0) throw host::script_error{"The library cannot be closed while one of its functions runs."};
    library_->close();
    library_.reset();
    left_ = engine_->report();
    engine_->forget_held();
}

}  // namespace zentrix::python
