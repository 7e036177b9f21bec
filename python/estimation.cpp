#include "python/estimation.h"

#include <pybind11/stl.h>

#include <algorithm>

#include "host/estimation/estimate.h"
#include "python/arrays.h"
#include "python/interpreter_lock.h"
#include "python/session.h"

/// The package passes checked arguments: an array of complex64, two dimensions, contiguous.
namespace zentrix::python {

namespace {

/// name -> (modulus, degrees) of the coefficients.
py::dict coefficients_of(const lens::aberrations& lens)
{
    py::dict values;
    for (const auto& about : lens::all_coefficients)
        values[py::str(std::string{about.name})] =
            py::make_tuple(lens[about.which].modulus, lens[about.which].angle_degrees);
    return values;
}

py::dict as_dict(const host::estimated_coefficient& one)
{
    py::dict entry;
    entry["name"] = std::string{lens::traits(one.which).name};
    entry["value"] = py::make_tuple(one.value.modulus, one.value.angle_degrees);
    entry["uncertainty"] = one.uncertainty;
    entry["angle_uncertainty"] = one.angle_uncertainty;
    entry["determined"] = one.determined;
    entry["reason"] = one.reason;
    return entry;
}

py::dict as_dict(const host::estimate& found)
{
    py::list coefficients;
    for (const auto& one : found.coefficients) coefficients.append(as_dict(one));
    py::dict result;
    result["coefficients"] = coefficients;
    result["lens"] = coefficients_of(found.setup.lens);
    result["object"] = host::name_of(found.object);
    result["criterion"] = found.criterion;
    result["noise"] = found.noise;
    result["resolution"] = found.resolution;
    result["chi_uncertainty"] = found.chi_uncertainty;
    result["starts"] = found.starts;
    result["agreeing"] = found.agreeing;
    result["evaluations"] = found.evaluations;
    result["seconds"] = found.seconds;
    result["stopped"] = found.stopped;
    return result;
}

host::estimate_options options_of(const std::vector<std::string>& free, const py::object& range,
                                  const py::object& region, const std::string& object, std::ptrdiff_t threads,
                                  bool widths_are_known)
{
    host::estimate_options options;
    options.free.clear();
    for (const auto& about : lens::all_coefficients)
        if (std::ranges::find(free, about.name) != free.end()) options.free.push_back(about.which);
    if (!range.is_none()) {
        const auto [lowest, highest] = range.cast<std::pair<double, double>>();
        options.defocus = host::search_range{lowest, highest};
    }
    if (!region.is_none()) {
        const auto part = region.cast<std::array<std::ptrdiff_t, 4>>();
        options.region = host::pixel_region{part[0], part[1], part[2], part[3]};
    }
    options.object = host::specimen_named(object);
    options.threads = threads;
    options.widths_are_known = widths_are_known;
    return options;
}

/// progress  None, or a function (fraction, {name: (modulus, degrees)}): the search stops when it returns False
/// Throws  what progress or a handler of a signal raises
py::dict estimate(const py::array& wave, const lens::optics& setup, const std::vector<std::string>& free,
                  const py::object& range, const py::object& region, const std::string& object, std::ptrdiff_t threads,
                  bool widths_are_known, const py::object& progress)
{
    const auto image = image_of(wave);
    const auto options = options_of(free, range, region, object, threads, widths_are_known);
    const auto report = [&](double fraction, const lens::optics& current) {
        const interpreter_lock locked;
        if (PyErr_CheckSignals() != 0) throw py::error_already_set{};
        if (progress.is_none()) return true;
        const auto answer = call_python(progress, py::make_tuple(fraction, coefficients_of(current.lens)));
        return answer.ptr() != Py_False;
    };
    host::estimate found;
    {
        const interpreter_unlock others_may_run;
        found = host::estimate_aberrations(*image, setup, options, report);
    }
    return as_dict(found);
}

}  // namespace

void add_estimation(py::module_& to) { to.def("estimate", &estimate); }

}  // namespace zentrix::python
