#include "python/files.h"

#include <pybind11/stl.h>

#include "host/files/file_error.h"
#include "host/parameters/recorded_image.h"
#include "python/arrays.h"
#include "python/interpreter_lock.h"

namespace zentrix::python {

namespace {

using scale_of_axis = std::tuple<double, double, std::string>;  ///< step, first, unit
using scale_of_axes = std::array<scale_of_axis, host::max_dimensions>;

/// What `access` returns. A file_error becomes ValueError. Other threads run meanwhile.
template <class Access>
auto with_file(Access access)
try {
    const interpreter_unlock others_may_run;
    return access();
} catch (const host::file_error& problem) {
    throw py::value_error{problem.what()};
}

/// Array, name, axes (x, y, z) as (step, first, unit), and kilovolts.
py::tuple read(const std::string& path)
{
    const auto image = with_file([&] { return host::read_recorded_image(host::system_path(path)); });
    scale_of_axes axes;
    for (std::size_t d = 0; d < axes.size(); ++d) {
        const host::axis_scale& axis = image->scale().axes[d];
        axes[d] = {axis.step, axis.first, axis.unit};
    }
    return py::make_tuple(array_of(image), image->name(), axes, image->scale().kilovolts);
}

void write(const std::string& path, const py::array& array, const scale_of_axes& axes, double kilovolts)
{
    host::calibration about;
    for (std::size_t d = 0; d < axes.size(); ++d) {
        const auto& [step, first, unit] = axes[d];
        about.axes[d] = {step, first, unit};
    }
    about.kilovolts = kilovolts;
    const auto image = image_of(array);
    image->set_scale(about);
    with_file([&] { host::write_recorded_image(host::system_path(path), *image); });
}

}  // namespace

void add_files(py::module_& to)
{
    to.def("read_file", &read);
    to.def("write_file", &write);
}

}  // namespace zentrix::python
