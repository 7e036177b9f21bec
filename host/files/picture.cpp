#include "host/files/picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <utility>

#include "host/files/file_error.h"
#include "host/files/pending_file.h"
#include "host/files/visit.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"  // its writers of other formats
#include <stb/stb_image_write.h>
#pragma GCC diagnostic pop

namespace zentrix::host {

namespace {

constexpr std::pair<const char*, display_mode> mode_words[] = {{"real", display_mode::real},
                                                               {"imaginary", display_mode::imaginary},
                                                               {"modulus", display_mode::modulus},
                                                               {"log", display_mode::log_modulus},
                                                               {"phase", display_mode::phase}};

float displayed(std::complex<double> value, display_mode mode)
{
    switch (mode) {
        case display_mode::real: return static_cast<float>(value.real());
        case display_mode::imaginary: return static_cast<float>(value.imag());
        case display_mode::modulus: return static_cast<float>(std::abs(value));
        case display_mode::log_modulus: return static_cast<float>(std::log(std::abs(value)));
        case display_mode::phase: return static_cast<float>(std::arg(value));
    }
    return 0;
}

std::uint8_t grey_of(float value, grey_limits limits)
{
    if (std::isnan(value)) return 0;
    if (limits.white <= limits.black) return 128;
    const double black = limits.black;  // in double, where the difference of two floats cannot overflow
    const double share = (std::clamp(value, limits.black, limits.white) - black) / (limits.white - black);
    return static_cast<std::uint8_t>(std::lround(255 * share));
}

/// Three cosines a third of a turn apart: their sum, and so nearly the brightness, is the same for every phase.
std::array<std::uint8_t, 3> colour_of(float phase)
{
    std::array<std::uint8_t, 3> channels{};
    if (std::isnan(phase)) return channels;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const double turned = phase - static_cast<double>(i) * 2 * std::numbers::pi / 3;
        channels[i] = static_cast<std::uint8_t>(std::lround(127.5 + 127.5 * std::cos(turned)));
    }
    return channels;
}

void append(void* context, void* bytes, int count)
{
    const auto* const begin = static_cast<const std::uint8_t*>(bytes);
    auto& all = *static_cast<std::vector<std::uint8_t>*>(context);
    all.insert(all.end(), begin, begin + count);
}

}  // namespace

std::optional<display_mode> parse_display_mode(const std::string& word)
{
    for (const auto& [name, mode] : mode_words)
        if (word == name) return mode;
    return std::nullopt;
}

std::vector<float> displayed_values(const image& pixels, display_mode mode)
{
    std::vector<float> values;
    values.reserve(std::size_t{pixels.size(0)} * pixels.size(1));
    visit_plane(pixels, 0, [&](std::complex<double> value) { values.push_back(displayed(value, mode)); });
    return values;
}

grey_limits robust_limits(std::vector<float> values)
{
    values.erase(std::remove_if(values.begin(), values.end(), [](float v) { return !std::isfinite(v); }), values.end());
    if (values.empty()) return {};
    const auto cut = static_cast<std::ptrdiff_t>(values.size() / 1000);
    const auto last = static_cast<std::ptrdiff_t>(values.size()) - 1;
    std::nth_element(values.begin(), values.begin() + cut, values.end());
    const float black = values[static_cast<std::size_t>(cut)];
    std::nth_element(values.begin(), values.begin() + (last - cut), values.end());
    const float white = values[static_cast<std::size_t>(last - cut)];
    const bool flat = white - black < 1e-5F * std::max(std::abs(black), std::abs(white));
    return {black, flat ? black : white};
}

picture make_picture(const image& pixels, display_mode mode, palette shades, std::optional<grey_limits> limits)
{
    const auto values = displayed_values(pixels, mode);
    picture made{
        static_cast<int>(pixels.size(0)), static_cast<int>(pixels.size(1)), shades == palette::cyclic ? 3 : 1, {}};
    made.bytes.reserve(values.size() * static_cast<std::size_t>(made.channels));
    if (shades == palette::cyclic) {
        for (const float value : values)
            for (const std::uint8_t channel : colour_of(value)) made.bytes.push_back(channel);
        return made;
    }
    const grey_limits between = limits ? *limits : robust_limits(values);
    for (const float value : values) made.bytes.push_back(grey_of(value, between));
    return made;
}

void write_png(const std::filesystem::path& file, const picture& shown)
{
    std::vector<std::uint8_t> png;
    pending_file output{file};
    if (!stbi_write_png_to_func(append, &png, shown.width, shown.height, shown.channels, shown.bytes.data(),
                                shown.width * shown.channels))
        throw file_error{file, "cannot be made into a picture: out of memory"};
    output.write(png.data(), png.size());
    output.commit();
}

void write_png(const std::filesystem::path& file, const image& pixels, display_mode mode, palette shades)
{
    if (pixels.dimensions() > 2) throw file_error{file, "a volume cannot be shown as one picture"};
    write_png(file, make_picture(pixels, mode, shades));
}

}  // namespace zentrix::host
