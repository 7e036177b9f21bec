#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <stdexcept>

#include "host/program/commands.h"
#include "host/program/lens_options.h"
#include "host/program/lens_request.h"
#include "host/program/picture_options.h"
#include "host/program/result_record.h"
#include "host/program/wave_file.h"
#include "host/text/system_path.h"
#ifdef _WIN32
#include "host/correction/finite_pixels.h"
#include "host/parameters/parameter_file.h"
#include "host/windows/panel_parameters.h"
#include "host/windows/panel_program.h"
#endif

namespace zentrix::program {

namespace {

struct panel_request
{
    std::string wave;
    lens_request lens;
    bool damped = false;
    host::display_mode shown = host::display_mode::modulus;
    host::palette phase_palette = host::palette::grey;
    std::string log, screenshot, screenshot_of_all;
    std::optional<unsigned> quit_after_ms;
};

#ifdef _WIN32

void run(const panel_request& request, const global_options& global)
{
    check_picture_name(request.screenshot);
    check_picture_name(request.screenshot_of_all);
    const auto wave = read_wave(request.wave);
    const std::size_t not_finite = host::count_not_finite(*wave);
    apply_nan_rule(request.wave, *wave, nan_rule::mean);  // shows the other pixels
    lens_request lens = request.lens;
    if (!lens.parameter_file.empty()) lens.from_file = host::read_parameters(host::system_path(lens.parameter_file));
    if (request.damped) lens.given.envelope = lens::damping::on;
    const auto settled = settle(lens, request.wave, wave->scale());
    const auto [coefficients, scope, note] = host::for_panel(settled.parameters, {});
    std::cerr << settled.notes << (note.empty() ? "" : "zentrix: " + note + "\n");
    session zentrix{global};
    host::panel_program_options options;
    options.input = host::input_of(request.wave);
    options.program = program_with_library(global);
    options.title = host::utf8_path(host::system_path(request.wave).filename());
    options.log = host::system_path(request.log);
    options.screenshot = host::system_path(request.screenshot);
    options.screenshot_of_all = host::system_path(request.screenshot_of_all);
    options.quit_after_ms = request.quit_after_ms;
    options.start = {coefficients, request.shown};
    options.phase_palette = request.phase_palette;
    options.not_finite = not_finite;
    host::panel_program program{zentrix.engine(), wave, scope, options};
    program.run();
    std::cout << program.costs() << '\n';
}

#else

void run(const panel_request&, const global_options&)
{
    throw std::runtime_error{"the panel needs Windows: run zentrix.exe there, or under Wine (see ./demo.sh --panel)"};
}

#endif

}  // namespace

void add_panel_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("panel", "Correct a complex wave by hand with the control panel (Windows)");
    auto request = std::make_shared<panel_request>();
    command->add_option("WAVE", request->wave, "Complex wave (.npy, two dimensions)")->required();
    host::parameter_set& given = request->lens.given;
    command->add_option("--kv", given.kilovolts, "Accelerating voltage [kV] (default: that of the file)")
        ->check(voltage_in_kilovolts());
    command->add_option("--pixel", given.pixel_nm, "Pixel size [nm] (default: that of the file)")
        ->check(pixel_in_nanometres());
    command
        ->add_option("--params", request->lens.parameter_file,
                     "File of parameters, or the record of a result (.json); other options override it")
        ->type_name("FILE");
    add_coefficients(*command, given);
    add_widths(*command, given);
    command->add_flag("--damp", request->damped, "Damp the corrected wave by these widths")->group(widths_group);
    add_display_options(*command, request->shown, request->phase_palette);
    command->add_option("--log", request->log, "Log changes of tags, calls and alerts")->type_name("FILE");
    command->add_option("--screenshot", request->screenshot, "Save a picture of the panel (.png)")->type_name("FILE");
    command
        ->add_option("--screenshot-of-all", request->screenshot_of_all,
                     "Save a picture of the panel and the wave (.png)")
        ->type_name("FILE");
    command->add_option("--quit-after", request->quit_after_ms, "Quit after this time [ms]")->type_name("MS");
    command->footer(
        "Example:\n  zentrix panel wave.npy --kv 300 --pixel 0.02 --C1 -62 --A1 14@35 --show phase\n\n"
        "The panel removes the aberrations that it shows, as zentrix correct does. It starts with those given here.\n"
        "Its angles are whole degrees.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
