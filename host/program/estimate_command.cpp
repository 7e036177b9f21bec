#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <set>
#include <sstream>

#include "host/batch/output_files.h"
#include "host/batch/progress.h"
#include "host/correction/multiply_spectrum.h"
#include "host/estimation/estimate.h"
#include "host/files/file_error.h"
#include "host/parameters/json_file.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/record.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/estimate_report.h"
#include "host/program/lens_options.h"
#include "host/program/lens_request.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

struct estimate_request
{
    lens_request lens;  ///< parameters and picture
    std::string wave;
    host::estimate_options options;
};

std::vector<std::string> words_of(const std::string& text)
{
    std::vector<std::string> words;
    std::istringstream stream{text};
    for (std::string word; std::getline(stream, word, ',');) words.push_back(word);
    if (text.ends_with(',')) words.emplace_back();
    return words;
}

lens::coefficient coefficient_named(const std::string& name, const char* option)
{
    for (const auto& about : lens::all_coefficients)
        if (name == about.name) return about.which;
    throw usage_error{std::string{option} + ": \"" + name + "\" is no coefficient; they are C1, A1, B2, A2, C3, S3, " +
                      "A3, B4, D4, A4, C5, A5, R5 and S5"};
}

/// "C1=-62,A1=14@35"
void set_start(estimate_request& request, const std::string& text)
{
    std::set<lens::coefficient> named;
    for (const std::string& word : words_of(text)) {
        const auto equals = word.find('=');
        if (equals == std::string::npos)
            throw usage_error{"--start is NAME=VALUE,NAME=VALUE, such as C1=-62,A1=14@35, not \"" + text + "\""};
        const auto which = coefficient_named(word.substr(0, equals), "--start");
        if (!named.insert(which).second) throw usage_error{"--start: " + word.substr(0, equals) + " is there twice"};
        try {
            request.lens.given.coefficients[which] = lens::parse_coefficient(which, word.substr(equals + 1));
        } catch (const std::invalid_argument& problem) {
            throw usage_error{std::string{"--start: "} + problem.what()};
        }
    }
}

/// "C1=-120:120"
void set_range(estimate_request& request, const std::string& text)
{
    const auto colon = text.find(':');
    if (!text.starts_with("C1=") || colon == std::string::npos)
        throw usage_error{"--range is C1=LOWEST:HIGHEST in nm, not \"" + text + "\""};
    const auto lowest = lens::parse_number(text.substr(3, colon - 3)),
               highest = lens::parse_number(text.substr(colon + 1));
    if (!lowest || !highest || *lowest >= *highest)
        throw usage_error{"--range is C1=LOWEST:HIGHEST in nm, not \"" + text + "\""};
    request.options.defocus = host::search_range{*lowest, *highest};
}

/// "X,Y,WIDTH,HEIGHT"
void set_region(estimate_request& request, const std::string& text)
{
    std::vector<std::ptrdiff_t> numbers;
    for (const std::string& word : words_of(text))
        if (const auto number = host::parse_number<std::int32_t>(word)) numbers.push_back(*number);
    if (numbers.size() != 4 || words_of(text).size() != 4)
        throw usage_error{"--region is X,Y,WIDTH,HEIGHT in pixels, not \"" + text + "\""};
    request.options.region = host::pixel_region{numbers[0], numbers[1], numbers[2], numbers[3]};
}

/// A line on standard error that is overwritten.
bool show_progress(double fraction, const lens::optics& current)
{
    std::cerr << "\r[" << std::lround(100 * fraction) << " %] C1 "
              << host::number_text(std::round(10 * current.lens[lens::coefficient::C1].modulus) / 10) << " nm \x1b[K"
              << std::flush;
    return true;
}

/// The wave corrected with what was found, as a picture.
void write_picture(const estimate_request& request, const host::image_ref& wave, const host::estimate& found,
                   const global_options& global)
{
    const auto arguments = lens::arguments_for(found.setup, static_cast<int>(wave->size(0)),
                                               static_cast<int>(wave->size(1)), lens::direction::remove);
    session zentrix{global};
    host::multiply_spectrum(zentrix.engine(), wave, arguments);
    write_result(request.lens.picture.png, request.lens.picture, *wave);
}

/// Exit code when no coefficient is determined.
constexpr int nothing_determined = 3;

void check_free(const host::estimate_options& options)
{
    for (const auto which : options.free)
        if (std::ranges::count(options.free, which) > 1)
            throw usage_error{"--free: " + std::string{lens::traits(which).name} + " is there twice"};
    if (options.defocus && std::ranges::count(options.free, lens::coefficient::C1) == 0)
        throw usage_error{"--range is that of C1, which is not among --free"};
}

void run(estimate_request& request, const global_options& global)
{
    lens_request& lens = request.lens;
    check_free(request.options);
    host::require_own_names({request.wave, lens.parameter_file}, {lens.output, lens.picture.png});
    if (!lens.parameter_file.empty()) lens.from_file = host::read_parameters(host::system_path(lens.parameter_file));
    if (!lens.output.empty() && !lens.output.ends_with(".json"))
        throw host::file_error{host::system_path(lens.output), "cannot be written: expected a name ending in .json"};
    if (!lens.output.empty()) host::require_no_record(host::system_path(lens.output));
    host::require_folder(lens.output);
    check_picture_of(lens.picture);
    const auto wave = read_wave(request.wave);
    const auto settled = settle(lens, request.wave, wave->scale());
    wave->set_scale(scale_of_result(wave->scale(), settled.parameters));
    check_picture("", lens.picture, *wave);
    host::require_places({lens.output, lens.picture.png});
    std::cerr << settled.notes;
    apply_nan_rule(request.wave, *wave, lens.not_finite);

    const bool shows = !global.json && host::is_terminal_for_bar();
    const auto& known = settled.parameters;
    request.options.widths_are_known = known.focus_spread_nm || known.convergence_mrad || known.vibration_nm;
    const auto found = host::estimate_aberrations(*wave, host::optics_of(settled.parameters), request.options,
                                                  shows ? show_progress : host::estimate_progress{});
    if (shows) std::cerr << "\r\x1b[K";
    const host::parameter_set parameters = parameters_with(settled.parameters, found);
    const json record = record_of(request.wave, parameters, found, global);
    if (!lens.output.empty()) host::write_json(host::system_path(lens.output), record);
    if (!lens.picture.png.empty()) write_picture(request, wave, found, global);
    if (global.json)
        print(record);
    else
        std::cout << table_of(found) << (lens.output.empty() ? "" : "parameters -> " + lens.output + "\n")
                  << (lens.picture.png.empty() ? "" : "picture -> " + lens.picture.png + "\n");
    if (!found.any_determined()) throw CLI::RuntimeError{nothing_determined};
}

void add_search_options(CLI::App& command, estimate_request& request)
{
    constexpr char group[] = "Search";
    command
        .add_option_function<std::string>(
            "--free",
            [&](const std::string& text) {
                request.options.free.clear();
                if (words_of(text).empty()) throw usage_error{"--free: no coefficient is named"};
                for (const std::string& word : words_of(text))
                    request.options.free.push_back(coefficient_named(word, "--free"));
            },
            "Coefficients to find (default: C1,A1,B2,A2,C3,S3); the others stay at their --start")
        ->type_name("NAMES")
        ->group(group);
    command
        .add_option_function<std::string>(
            "--start", [&](const std::string& text) { set_start(request, text); },
            "Values to start from, and of the coefficients that are not free (default: 0)")
        ->type_name("NAME=VALUE,...")
        ->group(group);
    command
        .add_option_function<std::string>(
            "--range", [&](const std::string& text) { set_range(request, text); },
            "Range of C1 [nm] (default: by wavelength and resolution)")
        ->type_name("C1=FROM:TO")
        ->group(group);
    command
        .add_option_function<std::string>(
            "--object", [&](const std::string& word) { request.options.object = host::specimen_named(word); },
            "What the object changes: the phase, as thin specimens do with electrons, or the amplitude: C1 and A1 only")
        ->check(CLI::IsMember({"phase", "amplitude", "auto"}).description(""))
        ->type_name("phase|amplitude|auto")
        ->group(group);
    command
        .add_option_function<std::string>(
            "--region", [&](const std::string& text) { set_region(request, text); }, "Part of the wave [pixels]")
        ->type_name("X,Y,W,H")
        ->group(group);
    command.add_option("--threads", request.options.threads, "Threads (default: one for each processor)")
        ->check(CLI::Range(1, 1024).description(""))
        ->type_name("N")
        ->group(group);
}

void add_parameters(CLI::App& command, lens_request& request)
{
    add_microscope(command, request.given);
    command
        .add_option("--params", request.parameter_file,
                    "File of parameters (.json) to start from; other options override it")
        ->type_name("FILE");
    add_nan_option(command, request.not_finite);
}

}  // namespace

void add_estimate_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("estimate", "Find the aberrations of a wave from the wave itself");
    auto request = std::make_shared<estimate_request>();
    request->lens.picture.shown = host::display_mode::phase;
    command->add_option("WAVE", request->wave, "Complex wave, two dimensions")->required();
    command
        ->add_option("-o,--output", request->lens.output,
                     "Parameters with what was found (.json), for --params of \"correct\" and for the panel")
        ->type_name("FILE");
    add_parameters(*command, request->lens);
    add_search_options(*command, *request);
    add_widths(*command, request->lens.given);
    add_picture_options(*command, request->lens.picture);
    command->footer(
        "Examples:\n"
        "  zentrix estimate wave.npy --kv 300 --pixel 0.02 -o found.json --png corrected.png\n"
        "  zentrix correct wave.npy -o corrected.npy --params found.json\n\n"
        "Give the widths of the envelope if they are known (--vibration 0 if there is none): they are then taken as\n"
        "right to a tenth. Otherwise the uncertainties include what an unknown envelope may change.\n\n"
        "A coefficient that the wave does not fix is \"not determined\" and keeps its start value. Exit code 3: none\n"
        "is determined. docs/estimation.md explains what can be found and how.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
