#include "host/pictures/picture.h"

#include "host/parallel/for_each_row.h"
#include "host/pictures/for_each_pixel.h"

namespace zentrix::host {

namespace {

const phase_colours& colours()
{
    static const phase_colours all;
    return all;
}

}  // namespace

picture_painter::picture_painter(const image& pixels, display_mode mode, palette shades, grey_limits limits,
                                 missing_pixels missing)
    : pixels_{pixels}, mode_{mode}, shades_{shades}, missing_{missing}, greys_{limits}
{
    with_numbers_of(pixels, [](const auto*) {});  // throws for other elements
    if (shades == palette::wave) wave_.emplace(limits.white);
}

void picture_painter::paint_row(int y, std::span<float> values, std::uint8_t* bytes) const
{
    const auto row = static_cast<std::uint32_t>(y);
    displayed_row(pixels_, row, mode_, values.data());
    if (wave_) {
        const auto phases = values.first(pixels_.size(0)), moduli = values.subspan(pixels_.size(0));
        displayed_row(pixels_, row, display_mode::modulus, moduli.data());
        wave_->shade(phases, moduli, bytes);
    } else if (shades_ == palette::cyclic)
        colours().shade(values, bytes);
    else if (missing_ == missing_pixels::marked)
        greys_.shade_marking_missing(values, bytes);
    else
        greys_.shade(values, bytes);
}

void paint_picture(const picture_painter& painter, picture& painted, const std::atomic<bool>* given_up)
{
    const auto width = static_cast<std::size_t>(painter.width()), height = static_cast<std::size_t>(painter.height());
    const std::size_t row_bytes = width * static_cast<std::size_t>(painter.channels());
    painted.bytes.resize(row_bytes * height);
    painted.width = painter.width();
    painted.height = painter.height();
    painted.channels = painter.channels();
    const auto threads = threads_for(std::ptrdiff_t{painted.width} * painted.height);
    std::vector<std::vector<float>> values(static_cast<std::size_t>(threads),
                                           std::vector<float>(painter.values_per_row()));
    for_each_row(painted.height, threads, [&](std::size_t thread, std::size_t y) {
        if (given_up && *given_up) return;
        painter.paint_row(static_cast<int>(y), values[thread], &painted.bytes[row_bytes * y]);
    });
}

}  // namespace zentrix::host
