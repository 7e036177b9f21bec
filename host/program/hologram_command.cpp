#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>
#include <numbers>
#include <optional>
#include <span>

#include "host/correction/multiply_spectrum.h"
#include "host/correction/unwrap_plane.h"
#include "host/correction/unwrap_report.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/hologram/reconstruct.h"
#include "host/parameters/parameter_file.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/lens_options.h"
#include "host/program/picture_options.h"
#include "host/program/step_times.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

using host::number_text;

struct hologram_request
{
    std::string hologram, reference, output;
    std::string wave;  ///< file for the wave if `output` is a phase; empty: not wanted
    host::hologram_options options;
    host::parameter_set given;
    lens::aberrations coefficients;  ///< of the command line
    std::string params;              ///< file; empty: none
    bool wants_phase = false, wants_unwrapped = false, in_degrees = false;
    picture_options picture;
    bool timing = false;

    bool result_is_phase() const { return wants_phase || wants_unwrapped; }
};

/// What the command computed.
struct outcome
{
    host::image_ref wave, result;  ///< the same unless the result is a phase
    host::hologram_report report;
    double hologram_pixel_nm = 0;  ///< 0: unknown
    std::optional<host::parameter_set> corrected;
    std::optional<host::unwrap_report> unwrapped;
    bool is_doubtful() const { return report.is_doubtful(); }
};

host::parameter_set parameters_of(const hologram_request& request)
{
    auto given = request.given;
    for (const auto& about : lens::all_coefficients)
        if (const auto& value = request.coefficients[about.which]; value.modulus != 0)
            given.coefficients[about.which] = value;
    if (request.params.empty()) return given;
    auto from_file = host::read_parameters(host::system_path(request.params));
    from_file.pixel_nm.reset();  // that of another wave
    return host::overlaid(given, from_file);
}

bool has_aberrations(const host::parameter_set& parameters)
{
    return std::ranges::any_of(parameters.coefficients, [](const auto& entry) { return entry.second.modulus != 0; });
}

host::image_ref plane_of(const host::image_ref& stack, std::uint32_t z)
{
    const std::uint32_t sizes[] = {stack->size(0), stack->size(1)};
    const std::ptrdiff_t strides[] = {1, stack->size(0)};
    auto* const first =
        static_cast<std::byte*>(stack->data()) + std::size_t{z} * stack->size(0) * stack->size(1) * stack->type().bytes;
    return host::image::over(stack->name(), stack->code(), first, sizes, strides, host::access::write, stack);
}

/// Removes the aberrations from each wave.
void correct(host::engine& engine, outcome& done, host::parameter_set parameters)
{
    const double pixel = host::square_pixel_nm(done.wave->scale());
    if (pixel == 0) throw usage_error{"the pixel size is not known: --pixel is required to remove aberrations"};
    if (!parameters.kilovolts && !parameters.wavelength_nm && done.wave->scale().kilovolts > 0)
        parameters.kilovolts = done.wave->scale().kilovolts;
    if (!parameters.kilovolts && !parameters.wavelength_nm)
        throw usage_error{"the voltage is not known: --kv is required to remove aberrations"};
    parameters.pixel_nm = pixel;
    const auto arguments =
        lens::arguments_for(host::optics_of(parameters), static_cast<int>(done.wave->size(0)),
                            static_cast<int>(done.wave->size(1)), lens::direction::remove, lens::damping::off);
    for (std::uint32_t z = 0; z < done.wave->size(2); ++z)
        host::multiply_spectrum(engine, plane_of(done.wave, z), arguments);
    done.corrected = parameters;
}

/// A new float32 image with the phases of the waves [rad].
host::image_ref phase_of(const host::image& wave)
{
    const std::uint32_t sizes[] = {wave.size(0), wave.size(1), wave.size(2)};
    auto phase = host::image::create(wave.name(), HOST_ELEMENT_FLOAT32, std::span{sizes, wave.dimensions()});
    phase->set_scale(wave.scale());
    const std::span from{static_cast<const std::complex<float>*>(wave.data()), wave.count()};
    std::ranges::transform(from, static_cast<float*>(phase->data()), [](auto value) { return std::arg(value); });
    return phase;
}

host::unwrap_report unwrap(host::engine& engine, const host::image_ref& phase)
{
    host::unwrap_report sum;
    for (std::uint32_t z = 0; z < phase->size(2); ++z) {
        const auto plane = plane_of(phase, z);
        const auto wrapped = plane->clone();
        host::unwrap_plane(engine, plane, 0);
        std::vector<std::int32_t> labels(plane->count());
        const auto report = host::report_on_unwrapping({static_cast<const float*>(wrapped->data()), wrapped->count()},
                                                       {static_cast<const float*>(plane->data()), plane->count()},
                                                       plane->size(0), labels);
        sum.positive_residues += report.positive_residues;
        sum.negative_residues += report.negative_residues;
        sum.cut_pixels += report.cut_pixels;
        sum.regions += report.regions;
        sum.unreached += report.unreached;
    }
    return sum;
}

/// Sets the scale that the command line gives instead of that of the file.
void settle_scale(host::image& hologram, const host::parameter_set& parameters)
{
    auto scale = hologram.scale();
    if (parameters.kilovolts) scale.kilovolts = *parameters.kilovolts;
    if (parameters.pixel_nm)
        for (const std::size_t axis : {0U, 1U}) scale.axes[axis] = {*parameters.pixel_nm, 0, "nm"};
    hologram.set_scale(scale);
}

outcome compute(const hologram_request& request, const global_options& global, step_times& times)
{
    const auto parameters = parameters_of(request);
    const auto hologram = times.measure("read", [&] { return host::read_image(host::system_path(request.hologram)); });
    settle_scale(*hologram, parameters);
    const auto reference = request.reference.empty() ? nullptr : host::read_image(host::system_path(request.reference));
    const auto zentrix = times.measure("load", [&] { return std::make_unique<session>(global); });
    outcome done;
    done.hologram_pixel_nm = host::square_pixel_nm(hologram->scale());
    try {
        auto [wave, report] = times.measure(
            "reconstruct", [&] { return host::reconstruct(zentrix->engine(), hologram, reference, request.options); });
        done.wave = std::move(wave);
        done.report = report;
    } catch (const host::script_error& problem) {
        throw host::file_error{host::system_path(request.hologram), problem.what()};
    }
    if (has_aberrations(parameters)) times.measure("correct", [&] { correct(zentrix->engine(), done, parameters); });
    done.result = done.wave;
    if (!request.result_is_phase()) return done;
    done.result = phase_of(*done.wave);
    if (request.wants_unwrapped)
        done.unwrapped = times.measure("unwrap", [&] { return unwrap(zentrix->engine(), done.result); });
    if (request.in_degrees) {
        const std::span values{static_cast<float*>(done.result->data()), done.result->count()};
        for (float& value : values) value *= static_cast<float>(180 / std::numbers::pi);
    }
    return done;
}

double rounded(double value, int digits)
{
    if (value == 0 || !std::isfinite(value)) return value;
    const double factor = std::pow(10.0, digits - std::ceil(std::log10(std::abs(value))));
    return std::round(value * factor) / factor;
}

std::string short_text(double value) { return number_text(rounded(value, 4)); }

/// "3.79 pixels (3.486 nm)"
std::string length_text(double pixels, double pixel_nm)
{
    return short_text(pixels) + " pixels" + (pixel_nm > 0 ? " (" + short_text(pixels * pixel_nm) + " nm)" : "");
}

const char* quality_of(const outcome& done)
{
    if (done.report.band.distinction == 0) return "given";
    return done.is_doubtful() ? "doubtful" : "good";
}

void print_report(const hologram_request& request, const outcome& done)
{
    const auto& report = done.report;
    const double nm = done.hologram_pixel_nm;
    std::cout << "sideband at " << short_text(report.band.at.real()) << ',' << short_text(report.band.at.imag()) << ", "
              << short_text(report.band.height) << " times its surroundings";
    if (report.band.distinction > 0)
        std::cout << ", " << short_text(report.band.distinction) << " times the next peak (" << quality_of(done) << ')';
    std::cout << "\nfringes: " << length_text(report.spacing_pixels, nm) << ", contrast "
              << short_text(report.contrast * 100) << " %";
    if (report.reference_contrast) std::cout << " (reference " << short_text(*report.reference_contrast * 100) << " %)";
    std::cout << "\nresolution: " << length_text(report.resolution_pixels, nm) << ", filter radius "
              << short_text(report.filter.radius) << " pixels of the transform\n";
    if (report.replaced > 0) std::cout << "outliers replaced: " << report.replaced << '\n';
    if (report.weak > 0) std::cout << "pixels with a weak reference: " << report.weak << '\n';
    if (done.corrected) std::cout << "aberrations removed\n";
    if (done.unwrapped)
        std::cout << "unwrapped: " << done.unwrapped->positive_residues + done.unwrapped->negative_residues
                  << " residues, " << done.unwrapped->cut_pixels << " pixels at cuts\n";
    const double wave_nm = host::square_pixel_nm(done.wave->scale());
    std::cout << (request.result_is_phase() ? request.in_degrees ? "phase in degrees, " : "phase in radians, "
                                            : "wave, ")
              << one_line(*done.result) << (wave_nm > 0 ? ", pixels of " + short_text(wave_nm) + " nm" : "") << " -> "
              << request.output << '\n';
}

json number_or_null(double value) { return value > 0 ? json(value) : json(nullptr); }

json report_as_json(const hologram_request& request, const outcome& done, const step_times& times)
{
    const auto& report = done.report;
    const double nm = done.hologram_pixel_nm;
    json described{{"result", program::as_json(*done.result, request.output)},
                   {"quantity", !request.result_is_phase() ? "wave"
                                : request.in_degrees       ? "phase in degrees"
                                                           : "phase in radians"},
                   {"pixel_nm", number_or_null(host::square_pixel_nm(done.wave->scale()))},
                   {"sideband", {report.band.at.real(), report.band.at.imag()}},
                   {"height", report.band.height},
                   {"distinction", number_or_null(report.band.distinction)},
                   {"quality", quality_of(done)},
                   {"spacing_pixels", report.spacing_pixels},
                   {"spacing_nm", number_or_null(report.spacing_pixels * nm)},
                   {"angle_degrees", report.angle_degrees},
                   {"contrast", report.contrast},
                   {"reference_contrast", report.reference_contrast ? json(*report.reference_contrast) : json(nullptr)},
                   {"radius", report.filter.radius},
                   {"resolution_pixels", report.resolution_pixels},
                   {"resolution_nm", number_or_null(report.resolution_pixels * nm)},
                   {"replaced_pixels", report.replaced},
                   {"weak_pixels", report.weak}};
    if (done.corrected) described["parameters"] = host::as_json(*done.corrected);
    if (done.unwrapped)
        described["unwrapping"] = {{"positive_residues", done.unwrapped->positive_residues},
                                   {"negative_residues", done.unwrapped->negative_residues},
                                   {"cut_pixels", done.unwrapped->cut_pixels},
                                   {"regions", done.unwrapped->regions},
                                   {"unreached", done.unwrapped->unreached}};
    if (request.timing) described["seconds"] = times.as_json();
    return described;
}

void check(const hologram_request& request)
{
    check_names(request.output, request.picture);
    if (request.in_degrees && !request.result_is_phase()) throw usage_error{"--degrees needs --phase or --unwrap"};
    if (!request.wave.empty()) host::require_writable_kind(host::system_path(request.wave));
}

void run(hologram_request& request, const global_options& global)
{
    check(request);
    step_times times;
    const auto done = compute(request, global, times);
    if (done.is_doubtful())
        std::cerr << "zentrix: warning: " << request.hologram << ": the sideband is only "
                  << short_text(done.report.band.distinction)
                  << " times as high as the next peak; --sideband X,Y chooses another one\n";
    if (request.result_is_phase()) request.picture.shown = host::display_mode::real;
    if (done.result->dimensions() > 2 && (!request.picture.png.empty() || !request.output.ends_with(".npy")))
        throw host::file_error{host::system_path(request.hologram), "is a stack, which cannot be shown as one picture"};
    times.measure("write", [&] {
        write_result(request.output, request.picture, *done.result);
        if (!request.wave.empty()) host::write_image(host::system_path(request.wave), *done.wave);
    });
    if (request.timing && !global.json) std::cerr << "zentrix: " << times.text() << '\n';
    if (global.json)
        print(report_as_json(request, done, times));
    else
        print_report(request, done);
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
    command->add_option("-o,--output", request->output, "Wave or phase (.npy, or .png for a picture only)")
        ->required()
        ->type_name("FILE");
    add_filter_options(*command, *request);
    add_correction_options(*command, *request);
    add_picture_options(*command, request->picture);
    add_timing_option(*command, request->timing);
    command->footer(
        "Example: zentrix hologram holo.dm3 --reference vacuum.dm3 --unwrap -o phase.npy --png phase.png\n"
        "docs/holograms.md explains the choice of the sideband and the report.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
