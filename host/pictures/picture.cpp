#include "host/pictures/picture.h"

namespace zentrix::host {

picture make_picture(const image& pixels, display_mode mode, palette shades, std::optional<grey_limits> limits)
{
    const auto values = displayed_values(pixels, mode);
    picture made{
        static_cast<int>(pixels.size(0)), static_cast<int>(pixels.size(1)), shades == palette::cyclic ? 3 : 1, {}};
    made.bytes.reserve(values.size() * static_cast<std::size_t>(made.channels));
    if (shades == palette::cyclic) {
        static const colour_wheel colour_of;
        for (const float value : values)
            for (const std::uint8_t channel : colour_of(value)) made.bytes.push_back(channel);
        return made;
    }
    const grey_scale grey{limits ? *limits : robust_limits(values)};
    for (const float value : values) made.bytes.push_back(grey(value));
    return made;
}

}  // namespace zentrix::host
