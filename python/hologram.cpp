#include "python/hologram.h"

#include <pybind11/complex.h>
#include <pybind11/stl.h>

#include <optional>
#include <string>

#include "host/hologram/reconstruct.h"
#include "python/arrays.h"
#include "python/session.h"

/// The package passes checked arrays: real or integers, two or three dimensions, contiguous.
namespace zentrix::python {

namespace {

using optional_number = std::optional<double>;

host::hologram_options options_of(const std::string& sideband, std::optional<std::complex<double>> at,
                                  optional_number radius, const std::string& window, optional_number flank,
                                  bool full_size, bool despike)
{
    host::hologram_options options;
    options.which = sideband == "other" ? host::sideband_choice::upper : host::sideband_choice::lower;
    options.at = at;
    options.filter.radius = radius;
    options.filter.flank = flank;
    options.filter.full_size = full_size;
    options.despike = despike;
    options.filter.shape = host::shape_named(window);
    return options;
}

py::dict as_dict(const host::hologram_report& report)
{
    const auto& filter = report.filter;
    py::dict found;
    found["sideband"] = py::make_tuple(report.band.at.real(), report.band.at.imag());
    found["height"] = report.band.height;
    found["distinction"] = report.band.distinction > 0 ? py::cast(report.band.distinction) : py::object{py::none{}};
    found["doubt"] = host::doubt_about(report.band);
    found["spacing"] = report.spacing_pixels;
    found["angle"] = report.angle_degrees;
    found["contrast"] = report.contrast;
    found["reference_contrast"] = report.reference_contrast;
    found["radius"] = filter.radius;
    found["resolution"] = report.resolution_pixels;
    found["replaced"] = report.replaced;
    found["weak"] = report.weak;
    found["reduction"] = static_cast<double>(filter.hologram_width) / static_cast<double>(filter.width);
    return found;
}

/// Errors say that they are about the reference.
host::vacuum_wave vacuum_of(host::engine& engine, const host::image_ref& reference,
                            const host::hologram_options& options)
try {
    return host::reconstruct_vacuum(engine, reference, options);
} catch (const host::script_error& problem) {
    throw host::script_error{std::string{"reference: "} + problem.what()};
}

/// The wave (complex64) and the members of its report; lengths in pixels of the hologram.
py::tuple reconstruct(session& host, const py::array& hologram, const std::optional<py::array>& reference,
                      const std::string& sideband, std::optional<std::complex<double>> at, optional_number radius,
                      const std::string& window, optional_number flank, bool full_size, bool despike)
{
    const auto image = image_of(hologram);
    const auto vacuum = reference ? image_of(*reference) : nullptr;
    const auto options = options_of(sideband, at, radius, window, flank, full_size, despike);
    const auto done = host.run([&](host::engine& engine) {
        if (!vacuum) return host::reconstruct(engine, image, nullptr, options);
        const auto shared = vacuum_of(engine, vacuum, options);
        return host::reconstruct(engine, image, &shared, options);
    });
    return py::make_tuple(array_of(done.wave), as_dict(done.report));
}

}  // namespace

void add_hologram(py::module_& to) { to.def("reconstruct", &reconstruct); }

}  // namespace zentrix::python
