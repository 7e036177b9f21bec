#include "host/pictures/picture.h"

namespace zentrix::host {

namespace {

/// `limits` are used for greys only.
void shade(std::span<const float> values, palette shades, grey_limits limits, std::vector<std::uint8_t>& bytes)
{
    bytes.clear();
    if (shades == palette::cyclic) {
        static const colour_wheel colour_of;
        for (const float value : values)
            for (const std::uint8_t channel : colour_of(value)) bytes.push_back(channel);
        return;
    }
    const grey_scale grey{limits};
    for (const float value : values) bytes.push_back(grey(value));
}

}  // namespace

picture_painter::picture_painter(const image& pixels, display_mode mode, palette shades)
    : pixels_{pixels}, mode_{mode}, shades_{shades}, values_(pixels.size(0))
{
    row_.reserve(values_.size() * static_cast<std::size_t>(channels()));
    if (shades_ == palette::cyclic) return;
    limits_ = robust_limits([&](const auto& use) {
        for (std::uint32_t y = 0; y < pixels_.size(1); ++y) {
            displayed_row(pixels_, y, mode_, values_.data());
            use(values_);
        }
    });
}

std::span<const std::uint8_t> picture_painter::row(int y)
{
    displayed_row(pixels_, static_cast<std::uint32_t>(y), mode_, values_.data());
    shade(values_, shades_, limits_, row_);
    return row_;
}

picture make_picture(const image& pixels, display_mode mode, palette shades, std::optional<grey_limits> limits)
{
    const auto values = displayed_values(pixels, mode);
    const int channels = shades == palette::cyclic ? 3 : 1;
    picture made{static_cast<int>(pixels.size(0)), static_cast<int>(pixels.size(1)), channels, {}};
    made.bytes.reserve(values.size() * static_cast<std::size_t>(channels));
    if (!limits && shades == palette::grey) limits = robust_limits([&](const auto& use) { use(values); });
    shade(values, shades, limits.value_or(grey_limits{}), made.bytes);
    return made;
}

}  // namespace zentrix::host
