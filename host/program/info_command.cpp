#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

#include "host/files/image_file.h"
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

void print_statistics(const std::string& file, const host::image& pixels, bool in_json)
{
    const statistics s = survey(pixels);
    const char* const what = is_complex(pixels) ? "modulus" : "value";
    if (in_json) {
        json described = as_json(pixels, file);
        described.update({{"of", what}, {"min", s.smallest}, {"max", s.largest}, {"mean", s.mean}});
        described["not_finite"] = s.not_finite;
        return print(described);
    }
    std::cout << file << ": " << one_line(pixels) << '\n';
    if (s.finite > 0)
        std::cout << what << " from " << number_text(s.smallest) << " to " << number_text(s.largest) << ", mean "
                  << number_text(s.mean) << '\n';
    if (s.not_finite > 0) std::cout << s.not_finite << " values are infinite or not a number\n";
}

}  // namespace

void add_info_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("info", "Print type, size and range of an image file");
    auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "Image file (.npy)")->required();
    command->callback(
        [&global, file] { print_statistics(*file, *host::read_image(host::system_path(*file)), global.json); });
}

}  // namespace zentrix::program
