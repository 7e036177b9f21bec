#include "host/program/mask_file.h"

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/describe.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

void check_mask(const std::string& name, const host::image& mask, const host::image& pixels)
{
    const bool fits_plane = mask.size(0) == pixels.size(0) && mask.size(1) == pixels.size(1);
    if (!fits_plane || (mask.size(2) != 1 && mask.size(2) != pixels.size(2)))
        throw host::file_error{host::system_path(name), "contains " + one_line(mask) + "; the mask for an image of " +
                                                            one_line(pixels) + " has its size, or that of one plane"};
    if (mask.type().meaning == host::element_class::complex)
        throw host::file_error{host::system_path(name),
                               "contains " + one_line(mask) + "; expected a mask: not 0 where a pixel is left out"};
}

}  // namespace

host::image_ref read_mask(const std::string& name, const host::image& pixels)
{
    const auto read = host::read_image(host::system_path(name));
    check_mask(name, *read, pixels);
    std::vector<std::uint32_t> sizes;
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) sizes.push_back(pixels.size(d));
    auto mask = host::image::create("mask", HOST_ELEMENT_UINT8, sizes);
    const std::span out{static_cast<std::uint8_t*>(mask->data()), mask->count()};
    auto next = out.begin();
    for (std::uint32_t z = 0; z < pixels.size(2); ++z)
        host::for_each_pixel_of_plane(*read, read->size(2) == 1 ? 0 : z,
                                      [&](std::complex<double> pixel) { *next++ = pixel != 0.0 ? 1 : 0; });
    if (std::ranges::count(out, 0) == 0)
        throw host::file_error{host::system_path(name), "leaves out every pixel (pixels that are not 0 are left out)"};
    return mask;
}

std::size_t leave_out(host::image& phase, const host::image& mask)
{
    const std::span values{static_cast<float*>(phase.data()), phase.count()};
    const auto* const out = static_cast<const std::uint8_t*>(mask.data());
    for (std::size_t i = 0; i < values.size(); ++i)
        if (out[i] != 0) values[i] = std::numeric_limits<float>::quiet_NaN();
    return static_cast<std::size_t>(std::count(out, out + values.size(), 1));
}

void restore_left_out(host::image& phase, const host::image& from, const host::image& mask)
{
    const std::span values{static_cast<float*>(phase.data()), phase.count()};
    const auto* const former = static_cast<const float*>(from.data());
    const auto* const out = static_cast<const std::uint8_t*>(mask.data());
    for (std::size_t i = 0; i < values.size(); ++i)
        if (out[i] != 0) values[i] = former[i];
}

}  // namespace zentrix::program
