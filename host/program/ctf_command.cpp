#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>

#include "host/batch/output_files.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/files/pending_file.h"
#include "host/files/png.h"
#include "host/parallel/for_each_row.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/record.h"
#include "host/program/commands.h"
#include "host/program/ctf_figure.h"
#include "host/program/describe.h"
#include "host/program/lens_options.h"
#include "host/program/picture_options.h"
#include "host/program/result_record.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

using host::number_text;

constexpr std::size_t profile_elements = 4001;

struct ctf_request
{
    host::parameter_set given;
    std::string parameter_file;
    int size = 512;
    std::vector<std::string> outputs;
    std::string title;
};

bool ends_with(const std::string& name, const char* extension)
{
    return std::filesystem::path{host::system_path(name)}.extension() == extension;
}

void check_outputs(const ctf_request& request)
{
    host::require_own_names({request.parameter_file}, request.outputs);
    for (const auto& name : request.outputs) {
        if (!ends_with(name, ".csv")) host::require_writable_kind(host::system_path(name));
        host::require_folder(name);
    }
    if (!request.title.empty() && std::ranges::none_of(request.outputs, is_picture_name))
        throw usage_error{"--title is for figures, and none is written: name one with -o FILE.png"};
}

/// "300 kV, C1 -62 nm, A1 14@35 nm, focus spread 3 nm"
std::string title_of(const host::parameter_set& used)
{
    std::string title = used.kilovolts ? number_text(*used.kilovolts) + " kV"
                                       : "wavelength " + number_text(host::wavelength_of(used)) + " nm";
    for (const auto& [which, value] : used.coefficients) {
        const auto& about = lens::traits(which);
        if (value.modulus == 0) continue;
        title += ", " + std::string{about.name} + " " + number_text(value.modulus);
        if (about.symmetry != 0) title += "@" + number_text(value.angle_degrees);
        title += " " + (std::string{about.unit} == "um" ? "µm" : std::string{about.unit});
    }
    const auto add = [&](const char* name, std::optional<double> width, const char* unit) {
        if (width.value_or(0) > 0) title += ", " + std::string{name} + " " + number_text(*width) + " " + unit;
    };
    add("focus spread", used.focus_spread_nm, "nm");
    add("convergence", used.convergence_mrad, "mrad");
    add("vibration", used.vibration_nm, "nm");
    for (std::size_t i = 0; (i = title.find('-', i)) != std::string::npos;) title.replace(i, 1, "\u2212");
    return title;
}

host::image_ref square_of(const transfer_function& about)
{
    const auto side = static_cast<std::uint32_t>(about.size);
    const std::uint32_t sizes[] = {side, side};
    auto square = host::image::create("contrast transfer", HOST_ELEMENT_FLOAT32, sizes);
    auto* const values = static_cast<float*>(square->data());
    host::for_each_row(about.size, host::threads_for(std::ptrdiff_t{about.size} * about.size),
                       [&](std::size_t, std::size_t y) {
                           for (int x = 0; x < about.size; ++x)
                               values[y * side + static_cast<std::size_t>(x)] = static_cast<float>(
                                   lens::contrast_transfer(about.arguments, about.frequency(x, static_cast<int>(y))));
                       });
    host::calibration scale;
    const double first = -(about.size / 2) * about.distance();
    scale.axes[0] = scale.axes[1] = {about.distance(), first, "1/nm"};
    square->set_scale(scale);
    return square;
}

transfer_function computed(const ctf_request& request, const host::parameter_set& used)
{
    const lens::optics setup = host::optics_of(used);
    transfer_function made;
    made.arguments =
        lens::arguments_for(setup, 2, 2, lens::direction::apply, used.envelope.value_or(lens::damping::automatic));
    made.limit = 0.5 / setup.pixel_nm;
    made.size = request.size;
    made.square = square_of(made);
    made.profile = lens::profile_of(made.arguments, made.limit, profile_elements, made.distance());
    made.title = request.title.empty() ? title_of(used) : request.title;
    return made;
}

/// The elements of the profile at the frequencies of the image and between them.
void write_profile(const std::string& name, const lens::contrast_profile& profile)
{
    std::string text = "frequency [1/nm],contrast,envelope\n";
    for (std::size_t i = 0; i < profile.contrast.size(); ++i)
        text += number_text(static_cast<double>(i) * profile.step) + "," + number_text(profile.contrast[i]) + "," +
                number_text(profile.envelope[i]) + "\n";
    host::pending_file output{host::system_path(name)};
    output.write(text.data(), text.size());
    output.commit();
}

json facts_of(const transfer_function& made)
{
    const lens::contrast_profile& profile = made.profile;
    const auto or_null = [](double frequency) { return frequency > 0 ? json(frequency) : json(); };
    return {{"zeros_per_nm", profile.zeros},
            {"information_limit_per_nm", or_null(profile.information_limit)},
            {"undersampled_from_per_nm", or_null(profile.undersampled_from)},
            {"step_per_nm", profile.step},
            {"contrast", profile.contrast},
            {"envelope", profile.envelope}};
}

host::provenance provenance_of(const host::parameter_set& used, const global_options& global)
{
    host::provenance made{.command = global.words, .inputs = {}};
    made.command.insert(made.command.begin(), "zentrix");
    made.parameters = used;
    made.program = host::program_facts({}, false);
    return made;
}

/// Writes the outputs and their record.
void write(const ctf_request& request, const transfer_function& function, const host::provenance& made)
{
    std::vector<std::filesystem::path> files;
    for (const auto& name : request.outputs) files.push_back(host::system_path(name));
    if (files.empty()) return;
    const auto record = host::record_path(files);
    host::require_places(request.outputs);
    std::vector<host::recorded_result> results;
    for (const auto& name : request.outputs) {
        const auto file = host::system_path(name);
        const bool is_image = !ends_with(name, ".csv") && !ends_with(name, ".png");
        if (ends_with(name, ".csv"))
            write_profile(name, function.profile);
        else if (is_image)
            host::write_image(file, *function.square);
        else {
            auto texts = host::texts_of(made);
            texts.emplace_back("Title", function.title);
            host::write_png(file, paint(function), texts);
        }
        results.push_back({file, is_image ? function.square.get() : nullptr});
    }
    finish_with_record(record, made, results);
}

void run(const ctf_request& request, const global_options& global)
{
    host::parameter_set used = request.given;
    if (!request.parameter_file.empty())
        used = host::overlaid(used, host::read_parameters(host::system_path(request.parameter_file)));
    if (!used.kilovolts && !used.wavelength_nm) throw usage_error{"--kv or --wavelength is required"};
    if (!used.pixel_nm) throw usage_error{"--pixel is required"};
    check_outputs(request);
    const transfer_function made = computed(request, used);
    write(request, made, provenance_of(used, global));
    if (global.json) {
        json done = facts_of(made);
        done["wavelength_nm"] = host::wavelength_of(used);
        done["files"] = request.outputs;
        return print(done);
    }
    const lens::contrast_profile& profile = made.profile;
    std::cout << "contrast transfer, " << made.title << '\n'
              << "first zero: " << (profile.zeros.empty() ? "none" : with_spacing(profile.zeros.front())) << '\n'
              << "information limit (envelope below 13.5 %): "
              << (profile.information_limit > 0 ? with_spacing(profile.information_limit) : "none") << '\n';
    if (profile.undersampled_from > 0)
        std::cout << "undersampled from " << with_spacing(profile.undersampled_from)
                  << ": phase steps of more than pi; a larger --size has smaller ones\n";
    for (const auto& name : request.outputs) std::cout << "-> " << name << '\n';
}

void add_optics(CLI::App& command, ctf_request& request)
{
    host::parameter_set& given = request.given;
    auto* const voltage = command.add_option("--kv", given.kilovolts, "Accelerating voltage [kV]; or --wavelength");
    voltage->check(voltage_in_kilovolts());
    command.add_option("--wavelength", given.wavelength_nm, "Wavelength [nm], for waves other than electrons")
        ->check(wavelength_in_nanometres())
        ->excludes(voltage);
    command.add_option("--pixel", given.pixel_nm, "Pixel size [nm]; the largest frequency is 1 / (2 pixels)")
        ->check(pixel_in_nanometres());
    command
        .add_option("--params", request.parameter_file,
                    "File of parameters, or the record of a result (.json); other options override it")
        ->type_name("FILE");
    add_coefficients(command, given);
    add_widths(command, given);
}

}  // namespace

void add_ctf_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("ctf", "Draw the phase contrast transfer function of a lens, or write its numbers");
    auto request = std::make_shared<ctf_request>();
    command
        ->add_option("-o,--output", request->outputs,
                     "Figure (.png), image of the function (.npy and others), or profile (.csv); may be repeated")
        ->type_name("FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command->add_option("--size", request->size, "Pixels along a side of the image (default: 512)")
        ->check(CLI::Range(16, 8192).description(""))
        ->type_name("N");
    command->add_option("--title", request->title, "Text above the figure (default: the parameters)")
        ->type_name("TEXT");
    add_optics(*command, *request);
    command->footer(
        "Example:\n  zentrix ctf -o ctf.png -o ctf.csv --kv 300 --pixel 0.05 --C1 -60 --C3 1.2 --focus-spread 4\n\n"
        "The profile is a mean over directions. docs/pictures.md explains the figure.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
