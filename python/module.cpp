#include <pybind11/stl.h>

#include "python/arrays.h"
#include "python/correction.h"
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
        .def("functions", &session::functions)
        .def("trace", &session::traces)
        .def("held",
             [](const session& self) {
                 const auto report = self.held();
                 return py::make_tuple(report.references, report.locks, report.others, report.violations);
             })
        .def("is_open", &session::is_open)
        .def("close", &session::close);
}

void add_tags(py::module_& to)
{
    py::class_<tags_view>(to, "Tags")
        .def("__len__", [](const tags_view& self) { return self.held->count(); })
        .def("get",
             [](const tags_view& self, py::handle name) -> py::object {
                 const auto found = self.held->get(text_from_python(name));
                 if (!found) throw py::key_error{py::repr(name).cast<std::string>()};
                 return tag_to_python(*found);
             })
        .def("get_at",
             [](const tags_view& self, std::size_t index) -> py::object {
                 const auto found = self.held->get_at(index);
                 if (!found) throw py::index_error{"There is no tag of that number."};
                 return tag_to_python(*found);
             })
        .def("name_at",
             [](const tags_view& self, std::size_t index) { return text_to_python(self.held->name_at(index)); });
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
    add_unwrapping(module);
    module.def("notifications", &notifications);
}

}  // namespace zentrix::python
