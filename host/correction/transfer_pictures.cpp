#include "host/correction/transfer_pictures.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <utility>

#include "host/correction/multiply_spectrum.h"
#include "host/correction/picture_values.h"
#include "host/correction/undersampled.h"

namespace zentrix::host {

transfer_pictures::transfer_pictures(engine& engine, int width, int height, std::function<lens::optics()> setup)
    : engine_{engine}, width_{width}, height_{height}, setup_{std::move(setup)}
{}

queued_pictures::task transfer_pictures::begin(const picture_request& wanted)
{
    const auto reduced = [&](int side) {
        return wanted.full ? side : static_cast<int>(std::ceil(std::clamp(wanted.zoom * side, 1.0, 1.0 * side)));
    };
    const int columns = reduced(width_), rows = reduced(height_);
    const lens::optics setup = setup_();
    // For single frequencies, see lens::transfer_value.
    const auto arguments = lens::arguments_for(setup, 2, 2, lens::direction::apply);
    const double right = 1 / (columns * setup.pixel_nm), down = 1 / (rows * setup.pixel_nm);
    task next;
    next.is_slow = wanted.full;
    next.work = [=, &host = engine_,
                 is_full = columns == width_ && rows == height_](const std::atomic<bool>& given_up) {
        rendered_picture picture;
        picture.is_full = is_full;
        picture.values = transfer_function_image(host, setup, columns, rows);
        if (!given_up) show_values(wanted, given_up, picture);
        if (!given_up) mask_undersampled(picture.shades, arguments, right, down);
        return picture;
    };
    return next;
}

image_ref transfer_function_image(engine& engine, const lens::optics& setup, int width, int height)
{
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    const auto spectrum = image::create("transfer function", HOST_ELEMENT_COMPLEX64, sizes);
    auto* const factors = static_cast<std::complex<float>*>(spectrum->data());
    std::fill_n(factors, spectrum->count(), std::complex<float>{1});
    multiply_by_transfer(engine, spectrum, spectrum, lens::arguments_for(setup, width, height, lens::direction::apply));
    auto shown = image::create("phase contrast transfer function", HOST_ELEMENT_FLOAT32, sizes);
    std::transform(factors, factors + spectrum->count(), static_cast<float*>(shown->data()),
                   [](std::complex<float> factor) { return -factor.imag(); });  // the factor is exp(-i chi)
    return shown;
}

}  // namespace zentrix::host
