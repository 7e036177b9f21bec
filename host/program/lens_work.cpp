#include "host/program/lens_work.h"

#include <cmath>
#include <iostream>
#include <sstream>
#include <utility>

#include "host/correction/kept_spectrum.h"
#include "host/correction/multiply_spectrum.h"
#include "host/files/file_error.h"
#include "host/program/describe.h"
#include "host/program/result_record.h"
#include "host/program/wave_file.h"
#include "host/program/wave_stack.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/plausible_units.h"

namespace zentrix::program {

using host::number_text;

/// One file on its way.
struct lens_work::job
{
    const host::file_task& task;
    wave_reader waves;
    picture_options picture;
    step_times times{};
    settled_parameters settled{};
    lens::optics optics{};
    bool damps = false;
    host::image_ref result{};  ///< of a stack: its outline
    std::optional<host::shown_range> shown{};
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
json further_members(const lens_request& request, const host::file_task& task)
{
    json more{{"removed", request.way == lens::direction::remove}};
    if (request.swept) more["sweep"] = request.swept->as_json();
    if (request.not_finite != nan_rule::refuse) more["nan"] = request.not_finite == nan_rule::zero ? "zero" : "mean";
    if (!task.outputs.at(1).empty() || is_picture_name(task.outputs.at(0)))
        more["picture"] = choice_of(request.picture);
    return more;
}

}  // namespace

void lens_work::check_stack(const job& one) const
{
    if (!one.waves.is_stack()) return;
    const auto refuse = [&](const char* why) {
        throw host::file_error{host::system_path(one.task.input), "contains " + one_line(one.waves.outline()) + why};
    };
    if (request_.swept) refuse("; a sweep needs a single wave");
    if (is_picture_name(one.task.outputs.at(0)) || !one.picture.png.empty())
        refuse("; a stack cannot be shown as one picture");
}

host::image_ref lens_work::next_wave(job& one, const std::string& name) const
{
    return one.times.measure("read", [&] {
        auto wave = one.waves.next();
        apply_nan_rule(name, *wave, request_.not_finite);
        wave->set_scale(scale_of_result(wave->scale(), one.settled.parameters));
        return wave;
    });
}

void lens_work::warn_of_units(const job& one)
{
    if (std::exchange(has_warned_, true)) return;  // the files of one command mostly have the same parameters
    std::istringstream doubts{lens::doubts_about_units(one.optics)};
    for (std::string doubt; std::getline(doubts, doubt);) std::cerr << "zentrix: warning: " << doubt << '\n';
}

lens::transfer_arguments lens_work::arguments_for(job& one) const
{
    const host::image& wave = one.waves.outline();
    const auto arguments =
        lens::arguments_for(one.optics, static_cast<int>(wave.size(0)), static_cast<int>(wave.size(1)), request_.way,
                            one.settled.parameters.envelope.value_or(lens::damping::automatic));
    one.damps = arguments.envelope;
    return arguments;
}

void lens_work::multiply(job& one, const host::image_ref& wave)
{
    const auto arguments = arguments_for(one);
    const auto costs = host::multiply_spectrum(session_.engine(one.times), wave, arguments);
    one.times.add("transform", costs.transform);
    one.times.add("function", costs.transfer);
}

void lens_work::make_wave(job& one, const host::picture_texts& texts)
{
    const auto wave = next_wave(one, one.task.input);
    multiply(one, wave);
    one.result = with_dimensions(wave, one.waves.outline().dimensions());
    one.times.measure("write",
                      [&] { one.shown = write_result(one.task.outputs.at(0), one.picture, *one.result, texts); });
}

void lens_work::make_stack(job& one)
{
    const host::image& from = one.waves.outline();
    one.result = new_outline(from.name(), from.size(0), from.size(1), from.size(2),
                             scale_of_result(from.scale(), one.settled.parameters));
    stack_writer to{one.task.outputs.at(0), *one.result};
    for (std::uint32_t z = 0; z < from.size(2); ++z) {
        const auto wave = next_wave(one, one.task.input + ", plane " + std::to_string(z));
        multiply(one, wave);
        one.times.measure("write", [&] { to.append(*wave); });
    }
    one.times.measure("write", [&] { to.commit(); });
}

void lens_work::make_sweep(job& one)
{
    const sweep& swept = *request_.swept;
    const auto wave = next_wave(one, one.task.input);
    host::calibration scale = wave->scale();
    scale.axes[2] = swept.axis();
    one.result =
        new_outline(wave->name(), wave->size(0), wave->size(1), static_cast<std::uint32_t>(swept.count), scale);
    stack_writer to{one.task.outputs.at(0), *one.result};
    const auto plane = wave->clone();
    host::engine& engine = session_.engine(one.times);
    auto spectrum = one.times.measure("transform", [&] { return host::kept_spectrum{wave}; });
    for (std::size_t z = 0; z < swept.count; ++z) {
        one.optics.lens[swept.which] = swept.value(z);
        one.times.measure("transform", [&] { spectrum.multiply(engine, arguments_for(one), plane); });
        one.times.measure("write", [&] { to.append(*plane); });
    }
    one.optics.lens[swept.which] = {};
    one.times.measure("write", [&] { to.commit(); });
}

host::file_outcome lens_work::operator()(const host::file_task& task)
{
    step_times opening;
    job one{task, opening.measure("read", [&] { return wave_reader{task.input}; }), request_.picture, opening};
    one.picture.png = task.outputs.at(1);
    check_stack(one);
    one.settled = settle(request_, task.input, one.waves.outline().scale());
    one.optics = host::optics_of(one.settled.parameters);
    const auto results = results_of(task);
    const host::provenance made{.command = command_for(task, request_.files, {"-o", "--png"}, global_),
                                .inputs = {host::input_of(task.input)},
                                .parameters = one.settled.parameters,
                                .program = program_with_library(global_),
                                .more = further_members(request_, task)};
    if (request_.files.resumes && host::is_recorded(results, made)) return done_before(task);
    const auto record = host::record_path(results);
    host::require_places(task.outputs);
    std::cerr << one.settled.notes;
    warn_of_units(one);
    if (request_.swept)
        make_sweep(one);
    else if (one.waves.is_stack())
        make_stack(one);
    else
        make_wave(one, host::texts_of(made));
    std::vector<host::recorded_result> recorded;
    for (const auto& file : results)
        recorded.push_back({file, is_picture_name(host::utf8_path(file)) ? nullptr : one.result.get()});
    finish_with_record(record, made, recorded);
    return outcome_of(one);
}

host::file_outcome lens_work::outcome_of(const job& one) const
{
    if (request_.timing && !global_.json) std::cerr << "zentrix: " << one.times.text() << '\n';
    const std::string& output = one.task.outputs.at(0);
    const bool removed = request_.way == lens::direction::remove;
    host::file_outcome outcome;
    outcome.facts = {{"result", as_json(*one.result, output)},
                     {"wavelength_nm", one.optics.wavelength_nm},
                     {"pixel_nm", one.optics.pixel_nm},
                     {"removed", removed},
                     {"envelope", one.damps}};
    if (request_.swept) outcome.facts["sweep"] = request_.swept->as_json();
    if (one.shown) outcome.facts["picture"] = as_json(*one.shown);
    if (request_.timing) outcome.facts["seconds"] = one.times.as_json();
    outcome.text = (removed ? "removed " : "applied ") + list_of_aberrations(request_, one.optics.lens) +
                   (one.damps ? ", with the envelope" : "") + ", wavelength " +
                   number_text(std::round(one.optics.wavelength_nm * 1e7) / 1e4) + " pm" +
                   (one.settled.origin.empty() ? "" : ", " + one.settled.origin) + ": " + one_line(*one.result) +
                   " -> " + output + "\n" + (one.shown ? "picture: " + one_line(*one.shown) + "\n" : "");
    return outcome;
}

}  // namespace zentrix::program
