#include "host/hologram/hologram_plane.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>

#include "host/objects/value.h"

namespace zentrix::host {

namespace {

void require_hologram(const image& hologram)
{
    const auto meaning = hologram.type().meaning;
    const bool is_real = meaning == element_class::real || meaning == element_class::signed_integer ||
                         meaning == element_class::unsigned_integer;
    if (!is_real)
        throw script_error{std::string{"A hologram is an image of integers or reals, not "} + hologram.type().name +
                           (meaning == element_class::complex ? ": this is a wave already." : ".")};
    if (hologram.dimensions() < 2) throw script_error{"A hologram has two dimensions, or three as a stack."};
    if (hologram.dimensions() > 2 && (hologram.size(0) == 3 || hologram.size(0) == 4))
        throw script_error{"A hologram has one value per pixel. This image has " + std::to_string(hologram.size(0)) +
                           ", as colour pictures have: convert it to greys, or take one channel."};
}

}  // namespace

image_ref hologram_plane(const image_ref& hologram, std::uint32_t z, const char* what)
{
    require_hologram(*hologram);
    const std::uint32_t sizes[] = {hologram->size(0), hologram->size(1)};
    const std::ptrdiff_t strides[] = {hologram->stride(0), hologram->stride(1)};
    auto* const first =
        static_cast<std::byte*>(hologram->data()) + hologram->stride(2) * std::ptrdiff_t{z} * hologram->type().bytes;
    auto plane =
        image::over(hologram->name(), hologram->code(), first, sizes, strides, access::read, hologram)->clone();
    plane->convert_to_float();
    plane->set_scale(hologram->scale());
    const std::span pixels{static_cast<const float*>(plane->data()), plane->count()};
    const auto bad = std::ranges::count_if(pixels, [](float value) { return !std::isfinite(value); });
    if (bad > 0)
        throw script_error{std::to_string(bad) + " of " + std::to_string(pixels.size()) + " pixels of the " + what +
                           " are infinite or not a number."};
    return plane;
}

}  // namespace zentrix::host
