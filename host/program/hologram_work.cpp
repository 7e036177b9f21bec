#include "host/program/hologram_work.h"

#include <iostream>
#include <utility>

#include "host/batch/output_files.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/parameters/recorded_image.h"
#include "host/program/describe.h"
#include "host/program/hologram_report.h"
#include "host/program/result_record.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace fs = std::filesystem;

namespace {

/// The files of one task and their records. The wave has a record of its own, where other commands look for its scale,
/// unless its name differs from that of the result in the ending only.
struct written_files
{
    std::string output, wave;
    picture_options picture;
    std::vector<fs::path> with_result, alone;  ///< `alone`: the wave, or nothing
    fs::path record = {}, record_of_wave = {};

    written_files(const host::file_task& task, const picture_options& look)
        : output{task.outputs.at(0)}, wave{task.outputs.at(2)}, picture{look}
    {
        picture.png = task.outputs.at(1);
        for (const std::string& name : {output, picture.png})
            if (!name.empty()) with_result.push_back(host::system_path(name));
        if (wave.empty()) return;
        const auto file = host::system_path(wave);
        const auto places = host::places_of_record(file), others = host::places_of_record(with_result.front());
        (places.front() == others.front() ? with_result : alone).push_back(file);
    }

    bool are_recorded(const host::provenance& made) const
    {
        return host::is_recorded(with_result, made) && (alone.empty() || host::is_recorded(alone, made));
    }

    /// Throws  host::file_error when a name is taken
    void choose_records()
    {
        record = host::record_path(with_result);
        if (!alone.empty()) record_of_wave = host::record_path(alone);
    }

    std::vector<host::recorded_result> results(const std::vector<fs::path>& files, const hologram_outcome& done) const
    {
        std::vector<host::recorded_result> results;
        for (const auto& file : files) {
            const bool is_wave = !wave.empty() && file == host::system_path(wave);
            const auto* const pixels = (is_wave ? done.wave : done.result).get();
            results.push_back({file, is_picture_name(host::utf8_path(file)) ? nullptr : pixels});
        }
        return results;
    }
};

/// Everything that decides on the result.
host::provenance provenance_of(const hologram_request& request, const host::file_task& task,
                               const std::optional<host::parameter_set>& removed, const host::image& hologram,
                               const global_options& global)
{
    host::provenance made{.command = command_for(task, request.files, {"-o", "--png", "--wave"}, global),
                          .inputs = {host::input_of(task.input)},
                          .parameters = removed,
                          .program = program_with_library(global),
                          .more = {{"hologram", options_as_json(request)}}};
    if (request.vacuum) made.inputs.push_back(*request.vacuum);
    const double pixel_nm = host::square_pixel_nm(hologram.scale());
    if (pixel_nm > 0) made.more["hologram"]["pixel_nm"] = pixel_nm;
    if (has_picture(task.outputs.at(0), request.picture) || !task.outputs.at(1).empty())
        made.more["picture"] = choice_of(request.picture);
    return made;
}

/// Writes the results and their records. Returns what the picture shows, if there is one.
std::optional<host::shown_range> write(const written_files& files, const hologram_outcome& done,
                                       const host::provenance& made)
{
    const bool is_cyclic = files.picture.shades == host::palette::cyclic;  // a turn is 2 pi
    auto shown = write_result(files.output, files.picture, *done.result, host::texts_of(made),
                              is_cyclic ? done.radians.get() : nullptr);
    if (!files.wave.empty()) host::write_image(host::system_path(files.wave), *done.wave);
    finish_with_record(files.record, made, files.results(files.with_result, done));
    if (!files.alone.empty()) finish_with_record(files.record_of_wave, made, files.results(files.alone, done));
    return shown;
}

/// Checks what can be checked before the wave is computed.
void check(const written_files& files, const std::string& name, const host::image& hologram)
{
    if (!has_picture(files.output, files.picture)) return;
    if (hologram.size(2) > 1)
        throw host::file_error{host::system_path(name),
                               "contains " + one_line(hologram) + "; a stack cannot be shown as one picture"};
    picture_options look = files.picture;
    look.enlargement = 1;  // the wave may be smaller
    check_picture(files.output, look, hologram);
}

host::file_outcome outcome_of(const hologram_request& request, const written_files& files, const std::string& input,
                              const hologram_outcome& done)
{
    host::file_outcome outcome;
    if (const auto doubt = host::doubt_about(done.report.band); !doubt.empty())
        outcome.notes = "zentrix: warning: " + input + ": " + doubt + "; --sideband X,Y chooses another place\n";
    outcome.text = input + ": " + text_of(request, done, files.output);
    outcome.facts = {{"result", as_json(*done.result, files.output)}, {"quantity", quantity_of(request)}};
    outcome.facts.update(as_json(done));
    if (!files.wave.empty()) outcome.facts["wave"] = as_json(*done.wave, files.wave);
    return outcome;
}

}  // namespace

const host::vacuum_wave* hologram_work::vacuum(step_times& times)
{
    if (request_.reference.empty()) return nullptr;
    if (vacuum_) return &*vacuum_;
    const auto file = host::system_path(request_.reference);
    const auto reference = times.measure("read", [&] { return host::read_recorded_image(file); });
    auto& engine = session_.engine(times);
    try {
        vacuum_ =
            times.measure("reconstruct", [&] { return host::reconstruct_vacuum(engine, reference, request_.options); });
    } catch (const host::script_error& problem) {
        throw host::file_error{file, problem.what()};
    }
    return &*vacuum_;
}

void hologram_work::prepare() { vacuum(preparing_); }

host::file_outcome hologram_work::operator()(const host::file_task& task)
{
    step_times times = std::exchange(preparing_, {});
    host::require_own_names({task.input, request_.reference, request_.parameter_file}, task.outputs);
    written_files files{task, request_.picture};
    const auto hologram =
        times.measure("read", [&] { return host::read_recorded_image(host::system_path(task.input)); });
    settle_scale(*hologram, request_);
    check(files, task.input, *hologram);
    const auto removed = parameters_to_remove(request_, *hologram);
    auto made = provenance_of(request_, task, removed, *hologram, global_);
    if (request_.files.resumes && files.are_recorded(made)) return done_before(task);
    files.choose_records();
    host::require_places(task.outputs);
    const auto* const shared = vacuum(times);
    auto& engine = session_.engine(times);
    hologram_outcome done;
    try {
        done = compute(engine, request_, hologram, shared, removed, times);
    } catch (const host::script_error& problem) {
        throw host::file_error{host::system_path(task.input), problem.what()};
    }
    made.found = as_json(done);
    const auto shown = times.measure("write", [&] { return write(files, done, made); });

    if (request_.timing && !global_.json) std::cerr << "zentrix: " << times.text() << '\n';
    auto outcome = outcome_of(request_, files, task.input, done);
    if (shown) {
        outcome.text += "picture: " + one_line(*shown) + "\n";
        outcome.facts["picture"] = as_json(*shown);
    }
    if (request_.timing) outcome.facts["seconds"] = times.as_json();
    return outcome;
}

}  // namespace zentrix::program
