#include "host/program/lens_work.h"

#include <cmath>
#include <iostream>

#include "host/correction/kept_spectrum.h"
#include "host/correction/multiply_spectrum.h"
#include "host/files/file_error.h"
#include "host/program/describe.h"
#include "host/program/result_record.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

using host::number_text;

/// One file on its way.
struct lens_work::job
{
    const host::file_task& task;
    step_times times{};
    host::image_ref wave{};  ///< the result at the end
    settled_parameters settled{};
    lens::optics optics{};
    bool damps = false;
};

namespace {

/// The coefficients that are not zero: "C1 -50 nm, A1 12@30 nm".
std::string list_of_coefficients(const lens::aberrations& lens)
{
    std::string text;
    for (const auto& about : lens::all_coefficients) {
        const lens::polar& value = lens[about.which];
        if (value.modulus == 0) continue;
        text += (text.empty() ? "" : ", ") + std::string{about.name} + " " + number_text(value.modulus);
        if (about.symmetry != 0) text += "@" + number_text(value.angle_degrees);
        text += " " + std::string{about.unit};
    }
    return text;
}

std::string list_of_aberrations(const lens_request& request, const lens::aberrations& lens)
{
    std::string text = list_of_coefficients(lens);
    if (request.swept) text += (text.empty() ? "" : ", ") + request.swept->text();
    return text.empty() ? "no aberration" : text;
}

/// Everything but the parameters that decides on the result.
json further_members(const lens_request& request)
{
    json more{{"removed", request.way == lens::direction::remove}};
    if (request.swept) more["sweep"] = request.swept->as_json();
    if (request.not_finite != nan_rule::refuse) more["nan"] = request.not_finite == nan_rule::zero ? "zero" : "mean";
    if (!request.picture.png.empty() || request.output.ends_with(".png")) more["picture"] = choice_of(request.picture);
    return more;
}

/// Plane z of a stack, in the stack's memory.
host::image_ref plane_of(const host::image_ref& stack, std::uint32_t z)
{
    const std::uint32_t sizes[] = {stack->size(0), stack->size(1)};
    const std::ptrdiff_t strides[] = {1, static_cast<std::ptrdiff_t>(stack->size(0))};
    return host::image::over(stack->name(), HOST_ELEMENT_COMPLEX64,
                             static_cast<std::complex<float>*>(stack->data()) + z * stack->stride(2), sizes, strides,
                             host::access::write, stack);
}

lens::transfer_arguments arguments_for(const lens::optics& optics, const host::image& wave, const lens_request& request,
                                       const host::parameter_set& parameters)
{
    return lens::arguments_for(optics, static_cast<int>(wave.size(0)), static_cast<int>(wave.size(1)), request.way,
                               parameters.envelope.value_or(lens::damping::automatic));
}

}  // namespace

void lens_work::each_plane(job& one)
{
    const auto arguments = arguments_for(one.optics, *one.wave, request_, one.settled.parameters);
    one.damps = arguments.envelope;
    host::engine& engine = session_.engine(one.times);
    host::spectrum_costs costs;
    for (std::uint32_t z = 0; z < one.wave->size(2); ++z) {
        const auto wave = one.wave->dimensions() == 2 ? one.wave : plane_of(one.wave, z);
        const auto [transform, transfer] = host::multiply_spectrum(engine, wave, arguments);
        costs.transform += transform;
        costs.transfer += transfer;
    }
    one.times.add("transform", costs.transform);
    one.times.add("function", costs.transfer);
}

void lens_work::sweep_planes(job& one)
{
    const sweep& swept = *request_.swept;
    const std::uint32_t sizes[] = {one.wave->size(0), one.wave->size(1), static_cast<std::uint32_t>(swept.count)};
    const auto stack = host::image::create(one.wave->name(), HOST_ELEMENT_COMPLEX64, sizes);
    host::calibration scale = one.wave->scale();
    scale.axes[2] = swept.axis();
    stack->set_scale(scale);
    host::engine& engine = session_.engine(one.times);
    one.times.measure("transform", [&] {
        host::kept_spectrum spectrum{one.wave};
        for (std::uint32_t z = 0; z < stack->size(2); ++z) {
            one.optics.lens[swept.which] = swept.value(z);
            const auto arguments = arguments_for(one.optics, *stack, request_, one.settled.parameters);
            one.damps = arguments.envelope;
            spectrum.multiply(engine, arguments, plane_of(stack, z));
        }
    });
    one.optics.lens[swept.which] = {};
    one.wave = stack;
}

void lens_work::compute(job& one)
{
    one.wave->set_scale(scale_of_result(one.wave->scale(), one.settled.parameters));
    if (request_.swept)
        sweep_planes(one);
    else
        each_plane(one);
}

host::file_outcome lens_work::operator()(const host::file_task& task)
{
    job one{task};
    picture_options picture = request_.picture;
    picture.png = task.outputs.at(1);
    const std::string& output = task.outputs.at(0);
    one.wave = one.times.measure("read", [&] { return read_waves(task.input); });
    if (one.wave->dimensions() > 2) {
        const std::string is_stack = "contains " + one_line(*one.wave) + "; ";
        if (request_.swept)
            throw host::file_error{host::system_path(task.input), is_stack + "a sweep needs a single wave"};
        if ((output.ends_with(".png") || !picture.png.empty()))
            throw host::file_error{host::system_path(task.input), is_stack + "a stack cannot be shown as one picture"};
    }
    one.settled = settle(request_, task.input, one.wave->scale());
    one.optics = host::optics_of(one.settled.parameters);
    const auto results = results_of(task);
    host::provenance made{.command = command_for(task, request_.files, {"-o", "--png"}, global_),
                          .inputs = {host::input_of(task.input)},
                          .parameters = one.settled.parameters,
                          .program = {},
                          .more = further_members(request_)};
    if (request_.files.resumes && is_done(results, made)) return done_before(task);
    const auto record = host::record_path(results);
    std::cerr << one.settled.notes;
    apply_nan_rule(task.input, *one.wave, request_.not_finite);
    compute(one);

    const auto shown =
        one.times.measure("write", [&] { return write_result(output, picture, *one.wave, host::texts_of(made)); });
    std::vector<host::recorded_result> recorded;
    for (const auto& file : results) recorded.push_back({file, file.extension() == ".png" ? nullptr : one.wave.get()});
    finish_with_record(record, made, recorded);

    if (request_.timing && !global_.json) std::cerr << "zentrix: " << one.times.text() << '\n';
    const bool removed = request_.way == lens::direction::remove;
    host::file_outcome outcome;
    outcome.facts = {{"result", as_json(*one.wave, output)},
                     {"wavelength_nm", one.optics.wavelength_nm},
                     {"pixel_nm", one.optics.pixel_nm},
                     {"removed", removed},
                     {"envelope", one.damps}};
    if (request_.swept) outcome.facts["sweep"] = request_.swept->as_json();
    if (shown) outcome.facts["picture"] = as_json(*shown);
    if (request_.timing) outcome.facts["seconds"] = one.times.as_json();
    outcome.text = (removed ? "removed " : "applied ") + list_of_aberrations(request_, one.optics.lens) +
                   (one.damps ? ", with the envelope" : "") + ", wavelength " +
                   number_text(std::round(one.optics.wavelength_nm * 1e7) / 1e4) + " pm" +
                   (one.settled.origin.empty() ? "" : ", " + one.settled.origin) + ": " + one_line(*one.wave) + " -> " +
                   output + "\n" + (shown ? "picture: " + one_line(*shown) + "\n" : "");
    return outcome;
}

}  // namespace zentrix::program
