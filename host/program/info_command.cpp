#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

#include "host/files/image_file.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/json.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

/// Extremes and mean of the finite values, and how many values are not finite.
struct statistics
{
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();
    double mean = 0;
    std::size_t finite = 0;
    std::size_t not_finite = 0;
};

/// Of the values, or of the moduli of complex ones.
statistics survey(const host::image& pixels)
{
    const bool complex = pixels.type().meaning == host::element_class::complex;
    statistics s;
    for (std::uint32_t z = 0; z < pixels.size(2); ++z)
        host::visit_plane(pixels, z, [&](std::complex<double> pixel) {
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

void print(const std::string& file, const host::image& pixels, bool json)
{
    const statistics s = survey(pixels);
    const bool complex = pixels.type().meaning == host::element_class::complex;
    if (json) {
        std::string text = as_json(pixels, file);
        text.pop_back();
        std::cout << text << ", \"of\": " << json_string(complex ? "modulus" : "value")
                  << ", \"min\": " << json_number(s.smallest) << ", \"max\": " << json_number(s.largest)
                  << ", \"mean\": " << json_number(s.mean) << ", \"not_finite\": " << s.not_finite << "}\n";
        return;
    }
    std::cout << file << ": " << one_line(pixels) << '\n';
    if (s.finite > 0)
        std::cout << (complex ? "modulus " : "values ") << plain_number(s.smallest) << " to " << plain_number(s.largest)
                  << ", mean " << plain_number(s.mean) << '\n';
    if (s.not_finite > 0) std::cout << s.not_finite << " values are infinite or not a number\n";
}

}  // namespace

void add_info_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("info", "Print type, size and range of an image file");
    auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "The image file (.npy)")->required();
    command->callback([&global, file] { print(*file, *host::read_image(host::system_path(*file)), global.json); });
}

}  // namespace zentrix::program
