#include <CLI/CLI.hpp>

#include "host/batch/output_files.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/parameters/parameter_file.h"
#include "host/program/commands.h"
#include "host/program/hologram_work.h"
#include "host/program/lens_options.h"
#include "host/program/work_options.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

/// The picture of a phase shows its values.
void settle_picture(hologram_request& request)
{
    auto& picture = request.picture;
    if (!request.result_is_phase()) return;
    if (picture.shown != host::display_mode::phase || picture.shades == host::palette::wave)
        throw usage_error{
            "--show is for waves, apart from --show phase: with --phase and --unwrap, the picture shows the "
            "phase"};
    picture.shown = host::display_mode::real;
    picture.quantity = request.in_degrees && picture.shades == host::palette::grey ? "phase (\u00b0)" : "phase (rad)";
}

void read_parameters(hologram_request& request)
{
    request.parameters = request.given;
    if (request.parameter_file.empty()) return;
    auto from_file = host::read_parameters(host::system_path(request.parameter_file));
    from_file.pixel_nm.reset();  // that of another wave
    request.parameters = host::overlaid(request.given, from_file);
}

void check_wave(const std::string& wave)
{
    if (wave.empty()) return;
    if (is_picture_name(wave))
        throw host::file_error{host::system_path(wave),
                               "a picture does not keep the wave; expected a name ending in .npy or .mrc"};
    host::require_writable_kind(host::system_path(wave), host::element_class::complex);
    host::require_folder(wave);
}

void run(hologram_request& request, const global_options& global)
{
    if (request.in_degrees && !request.result_is_phase()) throw usage_error{"--degrees needs --phase or --unwrap"};
    const auto& filter = request.options.filter;
    if (filter.flank && filter.shape != host::filter_shape::disk)
        throw usage_error{"--flank is that of --window disk; " + std::string{host::name_of(filter.shape)} +
                          " has none"};
    const auto meaning = request.result_is_phase() ? host::element_class::real : host::element_class::complex;
    const auto results = destination_of(request.output, request.files, meaning);
    const auto pictures = destination_of_pictures(request.picture.png, request.files);
    auto waves = destination_of(request.wave, request.files, host::element_class::complex);
    waves.suffix += "_wave";  // a folder may take phases and waves
    settle_picture(request);
    picture_options first = request.picture;
    first.png = example_of(pictures);
    check_names(example_of(results), first, meaning);
    check_wave(example_of(waves));
    read_parameters(request);
    if (!request.reference.empty()) {
        request.vacuum = host::input_of(request.reference);
        request.files.others = {request.reference};
    }
    hologram_work work{request, global};
    process_files(
        request.files, {results, pictures, waves}, global, [&](const host::file_task& task) { return work(task); },
        [&] { work.prepare(); });
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
            "--window", [&](const std::string& word) { options.filter.shape = host::shape_named(word); },
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
    command.add_option("--params", request.parameter_file, "File with the aberrations to remove (.json)")
        ->type_name("FILE");
    const auto set_result = [&request](hologram_result result) {
        return [&request, result](std::int64_t) { request.result = std::max(request.result, result); };
    };
    command.add_flag_function("--phase", set_result(hologram_result::phase),
                              "The result is the phase of the wave, wrapped");
    command.add_flag_function("--unwrap", set_result(hologram_result::unwrapped),
                              "The result is the unwrapped phase of the wave");
    command.add_flag("--degrees", request.in_degrees, "The phase is in degrees (default: radians)");
    command.add_option("--wave", request.wave, "Also write the complex wave")->type_name("FILE|FOLDER/");
    add_coefficients(command, request.given);
}

}  // namespace

void add_hologram_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("hologram", "Compute the wave of an off-axis hologram, or its phase");
    auto request = std::make_shared<hologram_request>();
    request->picture.shown = host::display_mode::phase;
    command
        ->add_option(
            "HOLOGRAM", request->files.inputs,
            "Holograms of integers or reals, or stacks of them: files, folders, patterns such as \"data/*.dm3\"")
        ->required();
    command
        ->add_option("--reference", request->reference, "Hologram of the vacuum, of the same size, for all holograms")
        ->type_name("FILE");
    command
        ->add_option("-o,--output", request->output,
                     "Wave or phase (.npy, .mrc; .tif for a phase; .png for a picture only), or a folder for many "
                     "results")
        ->required()
        ->type_name("FILE|FOLDER/");
    add_filter_options(*command, *request);
    add_correction_options(*command, *request);
    add_picture_options(*command, request->picture);
    add_result_options(*command, request->files);
    add_timing_option(*command, request->timing);
    command->footer(
        "Examples:\n"
        "  zentrix hologram holo.dm3 --reference vacuum.dm3 --unwrap -o unwrapped.npy --png phase.png\n"
        "  zentrix hologram series/ --reference vacuum.dm3 -o waves/ --jobs 2\n\n"
        "docs/holograms.md explains the choice of the sideband and the report.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
