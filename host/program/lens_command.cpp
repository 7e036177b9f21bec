#include "host/program/lens_command.h"

#include <CLI/CLI.hpp>

#include "host/parameters/parameter_file.h"
#include "host/program/lens_options.h"
#include "host/program/lens_work.h"
#include "host/program/work_options.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

void run(lens_request& request, const global_options& global)
{
    if (!request.parameter_file.empty())
        request.from_file = host::read_parameters(host::system_path(request.parameter_file));
    if (request.swept) request.from_file.coefficients.erase(request.swept->which);
    const auto results = destination_of(request.output, request.files, host::element_class::complex);
    const auto pictures = destination_of_pictures(request.picture.png, request.files);
    picture_options first = request.picture;
    first.png = example_of(pictures);
    check_names(example_of(results), first, host::element_class::complex);
    if (request.swept && (!request.picture.png.empty() || is_picture_name(example_of(results))))
        throw usage_error{"a sweep makes a stack, which cannot be shown as one picture"};
    lens_work work{request, global};
    process_files(request.files, {results, pictures}, global, [&](const host::file_task& task) { return work(task); });
}

void add_tilt_and_file(CLI::App& command, lens_request& request)
{
    command
        .add_option_function<std::string>(
            "--tilt",
            [&](const std::string& word) {
                const auto pair = lens::parse_pair(word);
                if (!pair) throw usage_error{"--tilt is X,Y in mrad, not \"" + word + "\""};
                request.given.tilt_mrad = {pair->first, pair->second};
            },
            "Beam tilt on the displayed image, right and up [mrad]")
        ->type_name("X,Y");
    command
        .add_option("--params", request.parameter_file,
                    "File of parameters, or the record of a result (.json); other options override it")
        ->type_name("FILE");
}

void set_coefficient(lens_request& request, lens::coefficient which, const std::string& word)
{
    if (!is_sweep(word)) {
        request.given.coefficients[which] = lens::parse_coefficient(which, word);
        return;
    }
    if (request.swept)
        throw usage_error{"--" + std::string{lens::traits(request.swept->which).name} + " and --" +
                          std::string{lens::traits(which).name} + " are both sweeps; one at a time is possible"};
    request.swept = parse_sweep(which, word);
}

void add_envelope(CLI::App& command, lens_request& request)
{
    command
        .add_option_function<std::string>(
            "--envelope",
            [&](const std::string& word) {
                request.given.envelope = word == "auto" ? lens::damping::automatic
                                         : word == "on" ? lens::damping::on
                                                        : lens::damping::off;
            },
            request.way == lens::direction::remove ? "Damp by these widths (auto: off, damping cannot be undone)"
                                                   : "Damp by these widths (auto: on)")
        ->check(CLI::IsMember({"auto", "on", "off"}).description(""))
        ->type_name("auto|on|off")
        ->group(widths_group);
}

/// --remove was an option of "zentrix correct" when that command applied aberrations by default. It is not in --help.
void refuse_former_option(CLI::App& command)
{
    const auto refuse = [] {
        throw usage_error{"--remove no longer exists: \"correct\" removes aberrations, \"aberrate\" applies them"};
    };
    command.add_flag_callback("--remove", refuse)->group("");
}

}  // namespace

void add_lens_command(CLI::App& app, const global_options& global, lens::direction way, const std::string& name,
                      const std::string& purpose)
{
    CLI::App* const command = app.add_subcommand(name, purpose);
    auto request = std::make_shared<lens_request>();
    request->way = way;
    refuse_former_option(*command);
    command
        ->add_option("WAVE", request->files.inputs,
                     "Complex waves, or stacks of waves: files, folders, patterns such as \"data/*.npy\"")
        ->required();
    command->add_option("-o,--output", request->output, "Result (.png: a picture only), or a folder for many results")
        ->required()
        ->type_name("FILE|FOLDER/");
    add_microscope(*command, request->given);
    add_tilt_and_file(*command, *request);
    add_coefficients(*command, [request = request.get()](lens::coefficient which, const std::string& word) {
        set_coefficient(*request, which, word);
    });
    add_widths(*command, request->given);
    add_envelope(*command, *request);
    add_nan_option(*command, request->not_finite);
    add_picture_options(*command, request->picture);
    add_result_options(*command, request->files);
    add_timing_option(*command, request->timing);
    command->footer("Examples:\n  zentrix " + name +
                    " wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -62 --A1 14@35\n  zentrix " + name +
                    " \"waves/*.npy\" -o results/ --params out.json --jobs 4\n  zentrix " + name +
                    " wave.npy -o stack.npy --kv 300 --pixel 0.02 --C1 -60:60:5\n\n"
                    "START:STOP:STEP of one coefficient makes a stack, a plane for each value.\n"
                    "C1 < 0 is underfocus. docs/conventions.md explains axes, signs and formulas, docs/many-files.md\n"
                    "folders, --continue and sweeps.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
