#include "host/pictures/picture.h"

#include "host/pictures/row_bands.h"

namespace zentrix::host {

namespace {

constexpr int pixels_for_a_thread = 65536;  // fewer are painted before a thread has started

}  // namespace

picture_painter::picture_painter(const image& pixels, display_mode mode, palette shades, grey_limits limits)
    : pixels_{pixels}, mode_{mode}, shades_{shades}, greys_{limits}
{}

void picture_painter::paint(int first, int end, std::uint8_t* bytes) const
{
    static const colour_wheel colours;
    std::vector<float> values(pixels_.size(0));
    for (int y = first; y < end; ++y, bytes += values.size() * static_cast<std::size_t>(channels())) {
        displayed_row(pixels_, static_cast<std::uint32_t>(y), mode_, values.data());
        if (shades_ == palette::cyclic)
            colours.shade(values, bytes);
        else
            greys_.shade(values, bytes);
    }
}

void paint_picture(const picture_painter& painter, picture& painted)
{
    painted.width = painter.width();
    painted.height = painter.height();
    painted.channels = painter.channels();
    const std::size_t row = static_cast<std::size_t>(painted.width) * static_cast<std::size_t>(painted.channels);
    painted.bytes.resize(row * static_cast<std::size_t>(painted.height));
    in_row_bands(painted.height, pixels_for_a_thread / painted.width, [&](int first, int end) {
        painter.paint(first, end, &painted.bytes[row * static_cast<std::size_t>(first)]);
    });
}

}  // namespace zentrix::host
