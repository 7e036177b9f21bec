#include "host/program/hologram_work.h"

#include <algorithm>
#include <complex>
#include <numbers>
#include <span>
#include <vector>

#include "host/correction/multiply_spectrum.h"
#include "host/correction/unwrap_plane.h"
#include "host/files/file_error.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/recorded_image.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

host::parameter_set parameters_of(const hologram_request& request)
{
    auto given = request.given;
    for (const auto& about : lens::all_coefficients)
        if (const auto& value = request.coefficients[about.which]; value.modulus != 0)
            given.coefficients[about.which] = value;
    if (request.params.empty()) return given;
    auto from_file = host::read_parameters(host::system_path(request.params));
    from_file.pixel_nm.reset();  // that of another wave
    return host::overlaid(given, from_file);
}

bool has_aberrations(const host::parameter_set& parameters)
{
    return std::ranges::any_of(parameters.coefficients, [](const auto& entry) { return entry.second.modulus != 0; });
}

host::image_ref plane_of(const host::image_ref& stack, std::uint32_t z)
{
    const std::uint32_t sizes[] = {stack->size(0), stack->size(1)};
    const std::ptrdiff_t strides[] = {1, stack->size(0)};
    auto* const first =
        static_cast<std::byte*>(stack->data()) + std::size_t{z} * stack->size(0) * stack->size(1) * stack->type().bytes;
    return host::image::over(stack->name(), stack->code(), first, sizes, strides, host::access::write, stack);
}

/// Removes the aberrations from each wave.
void correct(host::engine& engine, hologram_outcome& done, host::parameter_set parameters)
{
    const double pixel = host::square_pixel_nm(done.wave->scale());
    if (pixel == 0) throw usage_error{"the pixel size is not known: --pixel is required to remove aberrations"};
    if (!parameters.kilovolts && !parameters.wavelength_nm && done.wave->scale().kilovolts > 0)
        parameters.kilovolts = done.wave->scale().kilovolts;
    if (!parameters.kilovolts && !parameters.wavelength_nm)
        throw usage_error{"the voltage is not known: --kv is required to remove aberrations"};
    parameters.pixel_nm = pixel;
    const auto arguments =
        lens::arguments_for(host::optics_of(parameters), static_cast<int>(done.wave->size(0)),
                            static_cast<int>(done.wave->size(1)), lens::direction::remove, lens::damping::off);
    for (std::uint32_t z = 0; z < done.wave->size(2); ++z)
        host::multiply_spectrum(engine, plane_of(done.wave, z), arguments);
    done.corrected = parameters;
}

/// A new float32 image with the phases of the waves [rad].
host::image_ref phase_of(const host::image& wave)
{
    const std::uint32_t sizes[] = {wave.size(0), wave.size(1), wave.size(2)};
    auto phase = host::image::create(wave.name(), HOST_ELEMENT_FLOAT32, std::span{sizes, wave.dimensions()});
    phase->set_scale(wave.scale());
    const std::span from{static_cast<const std::complex<float>*>(wave.data()), wave.count()};
    std::ranges::transform(from, static_cast<float*>(phase->data()), [](auto value) { return std::arg(value); });
    return phase;
}

host::unwrap_report unwrap(host::engine& engine, const host::image_ref& phase)
{
    host::unwrap_report sum;
    for (std::uint32_t z = 0; z < phase->size(2); ++z) {
        const auto plane = plane_of(phase, z);
        const auto wrapped = plane->clone();
        host::unwrap_plane(engine, plane, 0);
        std::vector<std::int32_t> labels(plane->count());
        const auto report = host::report_on_unwrapping({static_cast<const float*>(wrapped->data()), wrapped->count()},
                                                       {static_cast<const float*>(plane->data()), plane->count()},
                                                       plane->size(0), labels);
        sum.positive_residues += report.positive_residues;
        sum.negative_residues += report.negative_residues;
        sum.cut_pixels += report.cut_pixels;
        sum.regions += report.regions;
        sum.unreached += report.unreached;
    }
    return sum;
}

/// Sets the scale that the command line gives instead of that of the file.
void settle_scale(host::image& hologram, const host::parameter_set& parameters)
{
    auto scale = hologram.scale();
    if (parameters.kilovolts) scale.kilovolts = *parameters.kilovolts;
    if (parameters.pixel_nm)
        for (const std::size_t axis : {0U, 1U}) scale.axes[axis] = {*parameters.pixel_nm, 0, "nm"};
    hologram.set_scale(scale);
}

}  // namespace

hologram_outcome compute(const hologram_request& request, const global_options& global, step_times& times)
{
    const auto parameters = parameters_of(request);
    const auto hologram =
        times.measure("read", [&] { return host::read_recorded_image(host::system_path(request.hologram)); });
    if (hologram->dimensions() > 2 && request.has_picture())
        throw host::file_error{host::system_path(request.hologram), "is a stack, which cannot be shown as one picture"};
    settle_scale(*hologram, parameters);
    const auto reference =
        request.reference.empty() ? nullptr : host::read_recorded_image(host::system_path(request.reference));
    const auto zentrix = times.measure("load", [&] { return std::make_unique<session>(global); });
    hologram_outcome done;
    done.hologram_pixel_nm = host::square_pixel_nm(hologram->scale());
    try {
        auto [wave, report] = times.measure(
            "reconstruct", [&] { return host::reconstruct(zentrix->engine(), hologram, reference, request.options); });
        done.wave = std::move(wave);
        done.report = report;
    } catch (const host::script_error& problem) {
        throw host::file_error{host::system_path(request.hologram), problem.what()};
    }
    if (has_aberrations(parameters)) times.measure("correct", [&] { correct(zentrix->engine(), done, parameters); });
    done.result = done.wave;
    if (!request.result_is_phase()) return done;
    done.result = phase_of(*done.wave);
    if (request.wants_unwrapped)
        done.unwrapped = times.measure("unwrap", [&] { return unwrap(zentrix->engine(), done.result); });
    if (request.in_degrees) {
        const std::span values{static_cast<float*>(done.result->data()), done.result->count()};
        for (float& value : values) value *= static_cast<float>(180 / std::numbers::pi);
    }
    return done;
}

}  // namespace zentrix::program
