#include "python/unwrapping.h"

#include "host/correction/unwrap_plane.h"
#include "host/correction/unwrap_report.h"
#include "python/arrays.h"
#include "python/interpreter_lock.h"
#include "python/session.h"

/// The package passes checked arrays: two dimensions, contiguous.
namespace zentrix::python {

namespace {

/// Unwraps a plane of float32 [rad] in place.
void unwrap(session& host, const py::array& phase, std::int32_t box)
{
    const auto image = image_of(phase);
    host.run([&](host::engine& engine) { host::unwrap_plane(engine, image, box); });
}

/// The numbers of a host::unwrap_report in their order. Overwrites `labels` (int32).
py::tuple report_on_unwrapping(const py::array& phase, const py::array& unwrapped, const py::array& labels)
{
    const auto wrapped = image_of(phase), result = image_of(unwrapped), label_image = image_of(labels);
    host::unwrap_report report;
    {
        const interpreter_unlock others_may_run;
        report =
            host::report_on_unwrapping({static_cast<const float*>(wrapped->data()), wrapped->count()},
                                       {static_cast<const float*>(result->data()), result->count()}, wrapped->size(0),
                                       {static_cast<std::int32_t*>(label_image->data()), label_image->count()});
    }
    return py::make_tuple(report.positive_residues, report.negative_residues, report.cut_pixels, report.regions,
                          report.unreached, report.left_out);
}

}  // namespace

void add_unwrapping(py::module_& to)
{
    to.def("unwrap", &unwrap);
    to.def("report_on_unwrapping", &report_on_unwrapping);
}

}  // namespace zentrix::python
