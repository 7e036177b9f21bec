#include "python/parameters.h"

#include <string>

#include "host/files/file_error.h"
#include "host/parameters/parameter_entries.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/record.h"
#include "host/text/system_path.h"

namespace zentrix::python {

namespace {

namespace py = pybind11;

/// The parameters of a file, as the JSON that write_parameters takes. Raises ValueError
std::string read_parameters(const std::string& path)
try {
    return host::as_json(host::read_parameters(host::system_path(path))).dump();
} catch (const host::file_error& problem) {
    throw py::value_error{problem.what()};
}

/// json  an object of parameters. Raises ValueError
void write_parameters(const std::string& path, const std::string& json)
try {
    host::require_no_record(host::system_path(path));
    host::write_parameters(host::system_path(path), host::parameters_in(nlohmann::ordered_json::parse(json)));
} catch (const host::file_error& problem) {
    throw py::value_error{problem.what()};
}

}  // namespace

void add_parameters(py::module_& to)
{
    to.def("read_parameters", &read_parameters);
    to.def("write_parameters", &write_parameters);
}

}  // namespace zentrix::python
