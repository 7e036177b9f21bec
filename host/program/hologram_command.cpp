#include <iostream>

#include "host/batch/output_files.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/parameters/record.h"
#include "host/program/commands.h"
#include "host/program/hologram_work.h"
#include "host/program/lens_options.h"
#include "host/program/result_record.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

void check(const hologram_request& request)
{
    check_names(request.output, request.picture,
                request.result_is_phase() ? host::element_class::real : host::element_class::complex);
    if (request.in_degrees && !request.result_is_phase()) throw usage_error{"--degrees needs --phase or --unwrap"};
    if (!request.wave.empty())
        host::require_writable_kind(host::system_path(request.wave), host::element_class::complex);
    host::require_own_names({request.hologram, request.reference, request.params},
                            {request.output, request.picture.png, request.wave});
}

/// The first of them is that of the record.
std::vector<std::filesystem::path> files_of(const hologram_request& request)
{
    std::vector<std::filesystem::path> files;
    for (const std::string& name : {request.output, request.picture.png, request.wave})
        if (!name.empty()) files.push_back(host::system_path(name));
    return files;
}

void warn_if_doubtful(const hologram_request& request, const host::hologram_report& report)
{
    if (!report.is_doubtful()) return;
    std::cerr << "zentrix: warning: " << request.hologram << ": the sideband is only "
              << host::number_text(std::round(report.band.distinction * 10) / 10)
              << " times as high as the next peak; --sideband X,Y chooses another one\n";
}

/// The command line decides on the result; the parameters are those of the wave.
host::provenance provenance_of(const hologram_request& request, const hologram_outcome& done,
                               const global_options& global)
{
    host::provenance made{.command = global.words, .inputs = {host::input_of(request.hologram)}};
    made.command.insert(made.command.begin(), "zentrix");
    if (!request.reference.empty()) made.inputs.push_back(host::input_of(request.reference));
    made.parameters = done.corrected;
    made.program = program_with_library(global);
    made.more = {{"hologram", as_json(request, done)}};
    return made;
}

/// Writes the results and their record. Returns what the picture shows, if there is one.
std::optional<host::shown_range> write(const hologram_request& request, const hologram_outcome& done,
                                       const std::filesystem::path& record, const global_options& global)
{
    std::vector<host::recorded_result> results;
    for (const auto& file : files_of(request)) {
        const auto& pixels = file == host::system_path(request.wave) ? done.wave : done.result;
        results.push_back({file, is_picture_name(host::utf8_path(file)) ? nullptr : pixels.get()});
    }
    const auto made = provenance_of(request, done, global);
    auto shown = write_result(request.output, request.picture, *done.result, host::texts_of(made));
    if (!request.wave.empty()) host::write_image(host::system_path(request.wave), *done.wave);
    finish_with_record(record, made, results);
    return shown;
}

void run(hologram_request& request, const global_options& global)
{
    check(request);
    const auto record = host::record_path(files_of(request));
    step_times times;
    const auto done = compute(request, global, times);
    warn_if_doubtful(request, done.report);
    if (request.result_is_phase()) {
        request.picture.shown = host::display_mode::real;
        request.picture.quantity = request.in_degrees ? "phase (\u00b0)" : "phase (rad)";
    }
    const auto shown = times.measure("write", [&] { return write(request, done, record, global); });
    if (request.timing && !global.json) std::cerr << "zentrix: " << times.text() << '\n';
    if (global.json) {
        auto described = as_json(request, done);
        if (shown) described["picture"] = as_json(*shown);
        if (request.timing) described["seconds"] = times.as_json();
        print(described);
    } else {
        std::cout << text_of(request, done);
        if (shown) std::cout << "picture: " << one_line(*shown) << '\n';
    }
}

void set_sideband(host::hologram_options& options, const std::string& word)
{
    options.at.reset();
    options.which = word == "other" ? host::sideband_choice::upper : host::sideband_choice::lower;
    if (word == "auto" || word == "other") return;
    const auto pair = lens::parse_pair(word);
    if (!pair) throw usage_error{"--sideband is auto, other or X,Y in pixels, not \"" + word + "\""};
    options.at = {pair->first, pair->second};
}

void add_filter_options(CLI::App& command, hologram_request& request)
{
    auto& options = request.options;
    command
        .add_option_function<std::string>(
            "--sideband", [&](const std::string& word) { set_sideband(options, word); },
            "auto: the lower sideband of the centred transform; other: the upper one, whose phase has the opposite "
            "sign; X,Y: the one at this pixel from the centre, right and down")
        ->type_name("auto|other|X,Y");
    command
        .add_option_function<double>(
            "--radius", [&](double value) { options.filter.radius = value; },
            "Radius of the filter [pixels of the transform along x] (default: half way to "
            "the next band)")
        ->check(positive_number());
    command
        .add_option_function<std::string>(
            "--window",
            [&](const std::string& word) {
                options.filter.shape = word == "hann"       ? host::filter_shape::hann
                                       : word == "gaussian" ? host::filter_shape::gaussian
                                                            : host::filter_shape::disk;
            },
            "Shape of the filter (default: disk, with a soft flank)")
        ->check(CLI::IsMember({"disk", "hann", "gaussian"}).description(""))
        ->type_name("disk|hann|gaussian");
    command.add_option_function<double>(
        "--flank", [&](double value) { options.filter.flank = value; },
        "Width of the disk's flank [pixels of the transform along x] (0: sharp; "
        "default: 12 % of the radius)");
    command.add_flag("--full-size", options.filter.full_size, "The wave has as many pixels as the hologram");
    command.add_flag("--despike", options.despike,
                     "Replace hot and dead pixels by the median of the 3 x 3 pixels around them");
}

void add_correction_options(CLI::App& command, hologram_request& request)
{
    command.add_option("--pixel", request.given.pixel_nm, "Pixel size of the hologram [nm] (default: the file's)")
        ->check(pixel_in_nanometres());
    command.add_option("--kv", request.given.kilovolts, "Accelerating voltage [kV] (default: the file's)")
        ->check(voltage_in_kilovolts());
    command.add_option("--params", request.params, "File with the aberrations to remove (.json)")->type_name("FILE");
    command.add_flag("--phase", request.wants_phase, "The result is the phase of the wave, wrapped");
    command.add_flag("--unwrap", request.wants_unwrapped, "The result is the unwrapped phase of the wave");
    command.add_flag("--degrees", request.in_degrees, "The phase is in degrees (default: radians)");
    command.add_option("--wave", request.wave, "Also write the complex wave")->type_name("FILE");
    add_coefficients(command, request.coefficients);
}

}  // namespace

void add_hologram_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("hologram", "Compute the wave of an off-axis hologram, or its phase");
    auto request = std::make_shared<hologram_request>();
    request->picture.shown = host::display_mode::phase;
    command->add_option("HOLOGRAM", request->hologram, "Hologram (integers or reals; three dimensions: a stack)")
        ->required();
    command->add_option("--reference", request->reference, "Hologram of the vacuum, of the same size")
        ->type_name("FILE");
    command
        ->add_option("-o,--output", request->output,
                     "Wave or phase (.npy, .mrc; .tif for a phase; .png for a picture only)")
        ->required()
        ->type_name("FILE");
    add_filter_options(*command, *request);
    add_correction_options(*command, *request);
    add_picture_options(*command, request->picture);
    add_timing_option(*command, request->timing);
    command->footer(
        "Example:\n  zentrix hologram holo.dm3 --reference vacuum.dm3 --unwrap -o unwrapped.npy --png phase.png\n\n"
        "docs/holograms.md explains the choice of the sideband and the report.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
