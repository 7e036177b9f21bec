#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <limits>

#include "host/files/image_file.h"
#include "host/parameters/recorded_image.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/many_files.h"
#include "host/program/work_options.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

using host::number_text;

/// Extremes and mean of the finite values, and counts.
struct statistics
{
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();
    double mean = 0;
    std::size_t finite = 0;
    std::size_t not_finite = 0;
};

bool is_complex(const host::image& pixels) { return pixels.type().meaning == host::element_class::complex; }

/// Of the values; of the moduli of complex values.
statistics survey(const host::image& pixels)
{
    const bool complex = is_complex(pixels);
    statistics s;
    for (std::uint32_t z = 0; z < pixels.size(2); ++z)
        host::for_each_pixel_of_plane(pixels, z, [&](std::complex<double> pixel) {
            const double value = complex ? std::abs(pixel) : pixel.real();
            if (!std::isfinite(value)) {
                ++s.not_finite;
                return;
            }
            s.smallest = std::min(s.smallest, value);
            s.largest = std::max(s.largest, value);
            s.mean += value;
            ++s.finite;
        });
    if (s.finite > 0) s.mean /= static_cast<double>(s.finite);
    return s;
}

json scale_as_json(const host::image& pixels)
{
    json axes = json::array();
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) {
        const auto& [step, first, unit] = pixels.scale().axes[d];
        axes.push_back(step == 0 ? json{} : json{{"step", step}, {"first", first}, {"unit", unit}});
    }
    json described{{"axes", axes}};
    if (const double pixel = host::square_pixel_nm(pixels.scale()); pixel > 0) described["pixel_nm"] = pixel;
    if (const double kilovolts = pixels.scale().kilovolts; kilovolts > 0) described["kv"] = kilovolts;
    return described;
}

std::string with_unit(double number, const std::string& unit)
{
    return number_text(number) + (unit.empty() ? "" : " " + unit);
}

/// "pixel 0.02 nm, planes 0.5 nm apart, first pixel at 1 nm, 2 nm, 0 nm; 300 kV"; empty if nothing is known.
std::string scale_text(const host::image& pixels)
{
    const auto& [axes, kilovolts] = pixels.scale();
    const auto& [x, y, z] = axes;
    std::string text, places;
    const auto add = [&](const std::string& part, const char* separator) {
        text += (text.empty() ? "" : separator) + part;
    };
    const bool is_square = pixels.dimensions() == 1 || (x.step == y.step && x.unit == y.unit);
    if (x.step != 0)
        add("pixel " + with_unit(x.step, x.unit) + (is_square ? "" : " x " + with_unit(y.step, y.unit)), ", ");
    if (pixels.dimensions() == 3 && z.step != 0) add("planes " + with_unit(z.step, z.unit) + " apart", ", ");
    for (std::size_t d = 0; d < pixels.dimensions(); ++d)
        places += (d == 0 ? "" : ", ") + with_unit(axes[d].first, axes[d].unit);
    if (std::ranges::any_of(axes, [](const auto& axis) { return axis.first != 0; }))
        add("first pixel at " + places, ", ");
    if (kilovolts > 0) add(number_text(kilovolts) + " kV", "; ");
    return text;
}

/// What is known of one file.
host::file_outcome info_of(const std::string& file)
{
    const auto path = host::system_path(file);
    const auto image = host::read_recorded_image(path);
    const host::image& pixels = *image;
    const statistics s = survey(pixels);
    const std::string what = is_complex(pixels) ? "modulus" : "value", format = host::format_of(path);
    host::file_outcome outcome;
    outcome.facts = as_json(pixels, file);
    outcome.facts.update({{"format", format}, {"name", pixels.name()}});
    outcome.facts.update(scale_as_json(pixels));
    outcome.facts.update({{"of", what}, {"min", s.smallest}, {"max", s.largest}, {"mean", s.mean}});
    outcome.facts["not_finite"] = s.not_finite;

    outcome.text = file + ": " + one_line(pixels) + " (" + format + ")\n";
    if (const std::string scale = scale_text(pixels); !scale.empty()) outcome.text += scale + "\n";
    if (s.finite > 0)
        outcome.text += what + " from " + number_text(s.smallest) + " to " + number_text(s.largest) + ", mean " +
                        number_text(s.mean) + "\n";
    if (s.not_finite > 0) outcome.text += std::to_string(s.not_finite) + " values are infinite or not a number\n";
    return outcome;
}

}  // namespace

void add_info_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("info", "Print format, type, size, scale and range of image files");
    auto files = std::make_shared<many_files>();
    files->prints_values = true;
    command->add_option("FILE", files->inputs, "Image files (.dm3, .dm4, .mrc, .npy, .tif), folders, patterns")
        ->required();
    add_jobs_option(*command, *files);
    command->footer(
        "Examples:\n  zentrix info wave.npy\n  zentrix info wave.npy --json\n  zentrix info \"data/*.npy\" --jobs 2");
    command->callback([&global, files] {
        process_files(*files, {}, global, [](const host::file_task& task) { return info_of(task.input); });
    });
}

}  // namespace zentrix::program
