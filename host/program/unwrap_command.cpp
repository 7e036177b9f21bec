#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>
#include <span>

#include "host/correction/unwrap_plane.h"
#include "host/correction/unwrap_report.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/picture_options.h"
#include "host/program/step_times.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

struct unwrap_request
{
    std::string phase;
    std::string output;
    std::int32_t box = 0;
    bool is_wave = false;
    picture_options picture;
    bool timing = false;
};

[[noreturn]] void refuse(const std::string& file, const host::image& pixels, const char* why)
{
    throw host::file_error{host::system_path(file), "contains " + one_line(pixels) + "; " + why};
}

void check_type(const unwrap_request& request, const host::image& pixels)
{
    const bool is_complex = pixels.type().meaning == host::element_class::complex;
    if (pixels.dimensions() < 2) refuse(request.phase, pixels, "expected a phase of two or three dimensions");
    if (is_complex && !request.is_wave)
        refuse(request.phase, pixels, "expected a real phase in radians (--phase computes it from a complex wave)");
    if (!is_complex && request.is_wave) refuse(request.phase, pixels, "--phase needs a complex wave");
    if (!is_complex && pixels.type().meaning != host::element_class::real)
        refuse(request.phase, pixels, "expected float32 or float64, in radians");
    const bool has_picture = !request.picture.png.empty() || !request.output.ends_with(".npy");
    if (pixels.dimensions() > 2 && has_picture)
        refuse(request.phase, pixels, "a volume cannot be shown as one picture");
}

/// A new float32 image of the same size.
host::image_ref new_phase_like(const host::image& pixels)
{
    std::vector<std::uint32_t> sizes;
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) sizes.push_back(pixels.size(d));
    return host::image::create(pixels.name(), HOST_ELEMENT_FLOAT32, sizes);
}

/// The wrapped phase as float32.
host::image_ref read_phase(const unwrap_request& request)
{
    auto read = host::read_image(host::system_path(request.phase));
    check_type(request, *read);
    if (read->code() == HOST_ELEMENT_FLOAT32) return read;
    auto phase = new_phase_like(*read);
    auto* out = static_cast<float*>(phase->data());
    for (std::uint32_t z = 0; z < read->size(2); ++z)
        host::for_each_pixel_of_plane(*read, z, [&](std::complex<double> pixel) {
            *out++ = static_cast<float>(request.is_wave ? std::arg(pixel) : pixel.real());
        });
    return phase;
}

/// Degrees or an unwrapped phase would give a meaningless result without an error.
void warn_beyond_half_a_turn(const std::string& file, const host::image& phase)
{
    const auto* const begin = static_cast<const float*>(phase.data());
    const auto count =
        std::count_if(begin, begin + phase.count(), [](float v) { return std::isfinite(v) && std::abs(v) > 3.1416F; });
    if (count > 0)
        std::cerr << "zentrix: warning: " << file << ": " << count
                  << " values are beyond -pi to pi; expected a wrapped phase in radians\n";
}

struct unwrapping
{
    host::image_ref phase;
    host::unwrap_report report;  ///< sums over all planes
};

host::unwrap_report sum_of(const host::unwrap_report& a, const host::unwrap_report& b)
{
    return {a.positive_residues + b.positive_residues,
            a.negative_residues + b.negative_residues,
            a.cut_pixels + b.cut_pixels,
            a.regions + b.regions,
            a.unreached + b.unreached,
            a.left_out + b.left_out};
}

unwrapping unwrap(const host::image_ref& phase, std::int32_t box, const global_options& global, step_times& times)
{
    const auto zentrix = times.measure("load", [&] { return std::make_unique<session>(global); });
    step_times::seconds function{}, report{};
    unwrapping done{phase->clone(), {}};
    const std::uint32_t sizes[] = {phase->size(0), phase->size(1)};
    const std::ptrdiff_t strides[] = {1, phase->size(0)};
    const std::size_t pixels = std::size_t{sizes[0]} * sizes[1];
    std::vector<std::int32_t> labels(pixels);
    for (std::uint32_t z = 0; z < phase->size(2); ++z) {  // the library unwraps a single plane
        const std::span wrapped{static_cast<const float*>(phase->data()) + z * pixels, pixels};
        const std::span result{static_cast<float*>(done.phase->data()) + z * pixels, pixels};
        const auto start = step_times::clock::now();
        host::unwrap_plane(zentrix->engine(),
                           host::image::over("plane", HOST_ELEMENT_FLOAT32, result.data(), sizes, strides,
                                             host::access::write, done.phase),
                           box);
        const auto unwrapped = step_times::clock::now();
        done.report = sum_of(done.report, host::report_on_unwrapping(wrapped, result, sizes[0], labels));
        function += unwrapped - start;
        report += step_times::clock::now() - unwrapped;
    }
    times.add("function", function);
    times.add("report", report);
    return done;
}

json report_as_json(const host::unwrap_report& report)
{
    return {{"positive_residues", report.positive_residues},
            {"negative_residues", report.negative_residues},
            {"cut_pixels", report.cut_pixels},
            {"regions", report.regions},
            {"unreached", report.unreached},
            {"left_out", report.left_out}};
}

void run(const unwrap_request& request, const global_options& global)
{
    check_names(request.output, request.picture);
    step_times times;
    const auto phase = times.measure("read", [&] { return read_phase(request); });
    warn_beyond_half_a_turn(request.phase, *phase);
    const auto [result, report] = unwrap(phase, request.box, global, times);
    if (report.left_out > 0)
        std::cerr << "zentrix: " << request.phase << ": " << report.left_out << " of " << result->count()
                  << " pixels are infinite or not a number; they are left out and stay as they are\n";
    const auto shown = times.measure(
        "write", [&, &pixels = *result] { return write_result(request.output, request.picture, pixels); });
    if (request.timing && !global.json) std::cerr << "zentrix: " << times.text() << '\n';
    if (global.json) {
        json done{{"result", as_json(*result, request.output)}, {"report", report_as_json(report)}};
        if (shown) done["picture"] = as_json(*shown);
        if (request.timing) done["seconds"] = times.as_json();
        print(done);
    } else
        std::cout << "unwrapped " << one_line(*result) << " -> " << request.output << '\n'
                  << "residues: " << report.positive_residues << " positive, " << report.negative_residues
                  << " negative; pixels at cuts: " << report.cut_pixels
                  << "; regions with an offset of their own: " << report.regions
                  << "; pixels not reached: " << report.unreached << '\n'
                  << (shown ? "picture: " + one_line(*shown) + "\n" : "");
}

}  // namespace

void add_unwrap_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("unwrap", "Unwrap a phase by Goldstein's branch cuts; a volume plane by plane");
    auto request = std::make_shared<unwrap_request>();
    request->picture.shown = host::display_mode::real;
    command->add_option("PHASE", request->phase, "Wrapped phase in radians (.npy, real, two or three dimensions)")
        ->required();
    command->add_option("-o,--output", request->output, "Unwrapped phase, float32 (.npy, or .png for a picture only)")
        ->required()
        ->type_name("FILE");
    command->add_option(
        "--box", request->box,
        "Largest box in which residues are joined [pixels] (0: half of width + height; 1, 2: every residue is cut off "
        "to the nearest edge)");
    command->add_flag("--phase", request->is_wave, "PHASE is a complex wave: unwrap its phase");
    add_picture_options(*command, request->picture);
    add_timing_option(*command, request->timing);
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
