#include "host/program/lens_command.h"

#include <cmath>
#include <iostream>
#include <optional>

#include "host/correction/multiply_spectrum.h"
#include "host/files/file_error.h"
#include "host/program/describe.h"
#include "host/program/lens_options.h"
#include "host/program/picture_options.h"
#include "host/program/step_times.h"
#include "host/program/wave_file.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/electron.h"
#include "lens/numbers.h"
#include "lens/transfer.h"

namespace zentrix::program {

namespace {

using host::number_text;

struct lens_request
{
    lens::direction way;
    std::string wave;
    std::string output;
    std::optional<double> kilovolts;
    lens::optics setup;
    lens::damping envelope = lens::damping::automatic;
    nan_rule not_finite = nan_rule::refuse;
    picture_options picture;
    bool timing = false;
};

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
    return text.empty() ? "no aberration" : text;
}

void run(lens_request& request, const global_options& global)
{
    lens::optics& setup = request.setup;
    if (!request.kilovolts && setup.wavelength_nm == 0) throw usage_error{"--kv or --wavelength is required"};
    if (request.kilovolts) setup.wavelength_nm = lens::electron_wavelength(*request.kilovolts);
    check_names(request.output, request.picture);
    step_times times;
    const auto wave = times.measure("read", [&] {
        auto read = read_wave(request.wave);
        apply_nan_rule(request.wave, *read, request.not_finite);
        return read;
    });
    const auto arguments = lens::arguments_for(setup, static_cast<int>(wave->size(0)), static_cast<int>(wave->size(1)),
                                               request.way, request.envelope);
    {
        const auto zentrix = times.measure("load", [&] { return std::make_unique<session>(global); });
        const auto costs = host::multiply_spectrum(zentrix->engine(), wave, arguments);
        times.add("transform", costs.transform);
        times.add("function", costs.transfer);
    }
    const auto shown = times.measure("write", [&] { return write_result(request.output, request.picture, *wave); });

    const bool removed = request.way == lens::direction::remove;
    if (request.timing && !global.json) std::cerr << "zentrix: " << times.text() << '\n';
    if (global.json) {
        json done{{"result", as_json(*wave, request.output)},
                  {"wavelength_nm", setup.wavelength_nm},
                  {"removed", removed},
                  {"envelope", arguments.envelope}};
        if (shown) done["picture"] = as_json(*shown);
        if (request.timing) done["seconds"] = times.as_json();
        print(done);
    } else
        std::cout << (removed ? "removed " : "applied ") << list_of_coefficients(setup.lens)
                  << (arguments.envelope ? ", with the envelope" : "") << ", wavelength "
                  << number_text(std::round(setup.wavelength_nm * 1e7) / 1e4) << " pm: " << one_line(*wave) << " -> "
                  << request.output << '\n'
                  << (shown ? "picture: " + one_line(*shown) + "\n" : "");
}

void add_microscope(CLI::App& command, lens_request& request)
{
    auto* const voltage = command.add_option("--kv", request.kilovolts,
                                             "Accelerating voltage [kV]; required unless --wavelength is given");
    voltage->check(voltage_in_kilovolts());
    command.add_option("--wavelength", request.setup.wavelength_nm, "Wavelength [nm], for waves other than electrons")
        ->check(positive_number())
        ->excludes(voltage);
    command.add_option("--pixel", request.setup.pixel_nm, "Pixel size [nm]")->required()->check(pixel_in_nanometres());
    command
        .add_option_function<std::string>(
            "--tilt",
            [&](const std::string& word) {
                const auto pair = lens::parse_pair(word);
                if (!pair) throw usage_error{"--tilt is X,Y in mrad, not \"" + word + "\""};
                request.setup.tilt_mrad = {pair->first, pair->second};
            },
            "Beam tilt on the displayed image, right and up [mrad]")
        ->type_name("X,Y");
}

void add_envelope(CLI::App& command, lens_request& request)
{
    command
        .add_option_function<std::string>(
            "--envelope",
            [&](const std::string& word) {
                request.envelope = word == "auto" ? lens::damping::automatic
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
    command->add_option("WAVE", request->wave, "Complex wave (.npy, two dimensions)")->required();
    command->add_option("-o,--output", request->output, "Result (.npy, or .png for a picture only)")
        ->required()
        ->type_name("FILE");
    add_microscope(*command, *request);
    add_coefficients(*command, request->setup.lens);
    add_widths(*command, request->setup.spread);
    add_envelope(*command, *request);
    command
        ->add_option_function<std::string>(
            "--nan",
            [request](const std::string& word) {
                request->not_finite = word == "zero" ? nan_rule::zero : nan_rule::mean;
            },
            "Replace pixels that are infinite or not a number by 0 or by the mean of the others (default: refuse them)")
        ->check(CLI::IsMember({"zero", "mean"}).description(""))
        ->type_name("zero|mean");
    add_picture_options(*command, request->picture);
    add_timing_option(*command, request->timing);
    command->footer("Example: zentrix " + name +
                    " wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -62 --A1 14@35\n"
                    "C1 < 0 is underfocus. docs/conventions.md explains axes, signs and formulas.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
