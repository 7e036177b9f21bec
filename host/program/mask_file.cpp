#include "host/program/mask_file.h"

#include <algorithm>
#include <limits>
#include <span>

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/describe.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

[[noreturn]] void refuse(const std::string& name, const std::string& why)
{
    throw host::file_error{host::system_path(name), why};
}

}  // namespace

mask_file::mask_file(const std::string& name)
    : input_{host::input_of(name)}, read_{host::read_image(host::system_path(name))}
{
    if (read_->type().meaning == host::element_class::complex)
        refuse(name, "contains " + one_line(*read_) + "; expected a mask: not 0 where a pixel is left out");
    bool leaves_all_out = true;
    for (std::uint32_t z = 0; z < read_->size(2); ++z)
        host::for_each_pixel_of_plane(*read_, z, [&](auto pixel) { leaves_all_out = leaves_all_out && pixel != 0.0; });
    if (leaves_all_out) refuse(name, "leaves out every pixel (pixels that are not 0 are left out)");
}

host::image_ref mask_file::mask_for(const host::image& pixels) const
{
    const bool fits_plane = read_->size(0) == pixels.size(0) && read_->size(1) == pixels.size(1);
    if (!fits_plane || (read_->size(2) != 1 && read_->size(2) != pixels.size(2)))
        refuse(input_.name, "contains " + one_line(*read_) + "; the mask for an image of " + one_line(pixels) +
                                " has its size, or that of one plane");
    const std::uint32_t sizes[] = {pixels.size(0), pixels.size(1), pixels.size(2)};
    auto mask = host::image::create("mask", HOST_ELEMENT_UINT8, std::span{sizes}.first(pixels.dimensions()));
    auto* next = static_cast<std::uint8_t*>(mask->data());
    for (std::uint32_t z = 0; z < pixels.size(2); ++z)
        host::for_each_pixel_of_plane(*read_, read_->size(2) == 1 ? 0 : z,
                                      [&](auto pixel) { *next++ = pixel != 0.0 ? 1 : 0; });
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
