#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

#include "host/files/image_file.h"
#include "host/parameters/recorded_image.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
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
void print_info(const std::string& file, bool in_json)
{
    const auto path = host::system_path(file);
    const auto image = host::read_recorded_image(path);
    const host::image& pixels = *image;
    const statistics s = survey(pixels);
    const char* const what = is_complex(pixels) ? "modulus" : "value";
    if (in_json) {
        json described = as_json(pixels, file);
        described.update({{"format", host::format_of(path)}, {"name", pixels.name()}});
        described.update(scale_as_json(pixels));
        described.update({{"of", what}, {"min", s.smallest}, {"max", s.largest}, {"mean", s.mean}});
        described["not_finite"] = s.not_finite;
        return print(described);
    }
    std::cout << file << ": " << one_line(pixels) << " (" << host::format_of(path) << ")\n";
    if (const std::string scale = scale_text(pixels); !scale.empty()) std::cout << scale << '\n';
    if (s.finite > 0)
        std::cout << what << " from " << number_text(s.smallest) << " to " << number_text(s.largest) << ", mean "
                  << number_text(s.mean) << '\n';
    if (s.not_finite > 0) std::cout << s.not_finite << " values are infinite or not a number\n";
}

}  // namespace

void add_info_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("info", "Print format, type, size, scale and range of an image file");
    auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "Image file (.dm3, .dm4, .mrc, .npy, .tif)")->required();
    command->footer("Examples:\n  zentrix info wave.npy\n  zentrix info wave.npy --json");
    command->callback([&global, file] { print_info(*file, global.json); });
}

}  // namespace zentrix::program
