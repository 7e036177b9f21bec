#include <pybind11/stl.h>

#include <optional>

#include "python/arrays.h"
#include "python/correction.h"
#include "python/estimation.h"
#include "python/files.h"
#include "python/hologram.h"
#include "python/notation.h"
#include "python/parameters.h"
#include "python/session.h"
#include "python/tags.h"
#include "python/unwrapping.h"
#include "python/values.h"

namespace zentrix::python {

namespace {

void add_session(py::module_& to)
{
    py::class_<session>(to, "Session")
        .def(py::init<std::string, py::object>())
        .def("call", &session::call)
        .def("call_method", &session::call_method)
        .def("functions", [](session& self) { return self.functions(host::origin::library); })
        .def("host_functions", [](session& self) { return self.functions(host::origin::host); })
        .def("trace", &session::traces)
        .def("held",
             [](const session& self) {
                 const auto report = self.held();
                 return py::make_tuple(report.references, report.locks, report.others, report.violations);
             })
        .def("is_open", &session::is_open)
        .def("close", &session::close);
}

/// What `read` returns for the tags. It runs on the host's thread, because scripts write tags there.
template <class Read>
auto read_tags(const tags_view& view, Read read)
{
    std::optional<decltype(read(*view.held))> found;
    run_on_host_thread([&] { found.emplace(read(*view.held)); });
    return *std::move(found);
}

void add_tags(py::module_& to)
{
    using host::tag_group;
    py::class_<tags_view>(to, "Tags")
        .def("__len__",
             [](const tags_view& self) { return read_tags(self, [](tag_group& tags) { return tags.count(); }); })
        .def("get",
             [](const tags_view& self, py::handle name) -> py::object {
                 const auto path = text_from_python(name);
                 const auto found = read_tags(self, [&](tag_group& tags) { return tags.get(path); });
                 if (!found) throw py::key_error{py::repr(name).cast<std::string>()};
                 return tag_to_python(*found);
             })
        .def("get_at",
             [](const tags_view& self, std::size_t index) -> py::object {
                 const auto found = read_tags(self, [&](tag_group& tags) { return tags.get_at(index); });
                 if (!found) throw py::index_error{"There is no tag of that number."};
                 return tag_to_python(*found);
             })
        .def("name_at", [](const tags_view& self, std::size_t index) {
            return text_to_python(read_tags(self, [&](tag_group& tags) { return tags.name_at(index); }));
        });
}

/// Calls a Python function without arguments on the host's thread.
py::object call_on_host_thread(const py::object& function)
{
    py::object result;
    run_on_host_thread([&] {
        const interpreter_lock locked;
        const callback_scope on_behalf_of_the_caller;
        result = call_python(function, py::tuple{});
    });
    return result;
}

/// Ends the host's thread after a last Python function.
void end(const py::object& last)
{
    end_host_thread([&] {
        const interpreter_lock locked;
        try {
            call_python(last, py::tuple{});
        } catch (py::error_already_set& raised) {
            raised.discard_as_unraisable("zentrix");
        }
    });
}

}  // namespace

PYBIND11_MODULE(_core, module)
{
    module.doc() = "The stand-alone host for Python; use the package zentrix.";
    module.attr("version") = ZENTRIX_VERSION;
    // Static, because exception translators cannot capture; never destroyed.
    static const auto& script_error = *new py::exception<host::script_error>{module, "ScriptError", PyExc_RuntimeError};
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            if (thrown) std::rethrow_exception(thrown);
        } catch (const host::script_error& stopped) {
            PyErr_SetObject(script_error.ptr(), text_to_python(stopped.what()).ptr());
        }
    });
    add_tags(module);
    add_session(module);
    add_correction(module);
    add_notation(module);
    add_parameters(module);
    add_unwrapping(module);
    add_estimation(module);
    add_hologram(module);
    add_files(module);
    module.def("notifications", &notifications);
    module.def("call_on_host_thread", &call_on_host_thread);
    module.def("end", &end);
    module.def("look_up_classes", &look_up_classes);
    register_fork_handlers();
}

}  // namespace zentrix::python
