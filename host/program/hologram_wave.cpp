#include "host/program/hologram_wave.h"

#include <algorithm>
#include <complex>
#include <numbers>
#include <span>
#include <vector>

#include "host/correction/multiply_spectrum.h"
#include "host/correction/unwrap_plane.h"

namespace zentrix::program {

namespace {

host::image_ref plane_of(const host::image_ref& stack, std::uint32_t z)
{
    const std::uint32_t sizes[] = {stack->size(0), stack->size(1)};
    const std::ptrdiff_t strides[] = {1, stack->size(0)};
    auto* const first =
        static_cast<std::byte*>(stack->data()) + std::size_t{z} * stack->size(0) * stack->size(1) * stack->type().bytes;
    return host::image::over(stack->name(), stack->code(), first, sizes, strides, host::access::write, stack);
}

/// Removes the aberrations from each wave.
void correct(host::engine& engine, const host::image_ref& waves, host::parameter_set parameters)
{
    parameters.pixel_nm = host::square_pixel_nm(waves->scale());
    const auto arguments =
        lens::arguments_for(host::optics_of(parameters), static_cast<int>(waves->size(0)),
                            static_cast<int>(waves->size(1)), lens::direction::remove, lens::damping::off);
    for (std::uint32_t z = 0; z < waves->size(2); ++z) host::multiply_spectrum(engine, plane_of(waves, z), arguments);
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
        sum += host::report_on_unwrapping({static_cast<const float*>(wrapped->data()), wrapped->count()},
                                          {static_cast<const float*>(plane->data()), plane->count()}, plane->size(0),
                                          labels);
    }
    return sum;
}

host::image_ref in_degrees(const host::image& radians)
{
    auto degrees = radians.clone();
    degrees->set_scale(radians.scale());
    const std::span values{static_cast<float*>(degrees->data()), degrees->count()};
    for (float& value : values) value *= static_cast<float>(180 / std::numbers::pi);
    return degrees;
}

}  // namespace

void settle_scale(host::image& hologram, const hologram_request& request)
{
    auto scale = hologram.scale();
    if (request.parameters.kilovolts) scale.kilovolts = *request.parameters.kilovolts;
    if (request.parameters.pixel_nm)
        for (const std::size_t axis : {0U, 1U}) scale.axes[axis] = {*request.parameters.pixel_nm, 0, "nm"};
    hologram.set_scale(scale);
}

std::optional<host::parameter_set> parameters_to_remove(const hologram_request& request, const host::image& hologram)
{
    auto removed = request.parameters;
    removed.pixel_nm.reset();
    if (std::ranges::none_of(removed.coefficients, [](const auto& entry) { return entry.second.modulus != 0; }))
        return std::nullopt;
    if (host::square_pixel_nm(hologram.scale()) == 0)
        throw usage_error{"the pixel size is not known: --pixel is required to remove aberrations"};
    if (!removed.kilovolts && !removed.wavelength_nm && hologram.scale().kilovolts > 0)
        removed.kilovolts = hologram.scale().kilovolts;
    if (!removed.kilovolts && !removed.wavelength_nm)
        throw usage_error{"the voltage is not known: --kv is required to remove aberrations"};
    return removed;
}

hologram_outcome compute(host::engine& engine, const hologram_request& request, const host::image_ref& hologram,
                         const host::vacuum_wave* vacuum, const std::optional<host::parameter_set>& removed,
                         step_times& times)
{
    hologram_outcome done;
    done.hologram_pixel_nm = host::square_pixel_nm(hologram->scale());
    auto [wave, report] =
        times.measure("reconstruct", [&] { return host::reconstruct(engine, hologram, vacuum, request.options); });
    done.wave = std::move(wave);
    done.report = report;
    done.is_corrected = removed.has_value();
    if (removed) times.measure("correct", [&] { correct(engine, done.wave, *removed); });
    done.result = done.radians = done.wave;
    if (!request.result_is_phase()) return done;
    done.result = done.radians = phase_of(*done.wave);
    if (request.result == hologram_result::unwrapped)
        done.unwrapped = times.measure("unwrap", [&] { return unwrap(engine, done.radians); });
    if (request.in_degrees) done.result = in_degrees(*done.radians);
    return done;
}

}  // namespace zentrix::program
