#include "host/program/wave_file.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>
#include <limits>
#include <span>

#include "host/correction/finite_pixels.h"
#include "host/files/file_error.h"
#include "host/parameters/recorded_image.h"
#include "host/program/describe.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

/// The wave in complex numbers of two floats.
host::image_ref in_single_precision(const std::filesystem::path& file, const host::image_ref& wave)
{
    if (wave->code() == HOST_ELEMENT_COMPLEX64) return wave;
    const std::uint32_t sizes[] = {wave->size(0), wave->size(1), wave->size(2)};
    auto single = host::image::create(wave->name(), HOST_ELEMENT_COMPLEX64, std::span{sizes}.first(wave->dimensions()));
    single->set_scale(wave->scale());
    const std::span from{static_cast<const std::complex<double>*>(wave->data()), wave->count()};
    constexpr double largest = std::numeric_limits<float>::max();
    if (std::ranges::any_of(from, [](const std::complex<double>& pixel) {
            const double size = std::max(std::abs(pixel.real()), std::abs(pixel.imag()));
            return size > largest && std::isfinite(size);
        }))
        throw host::file_error{file, "has values that are too large for single precision"};
    std::ranges::copy(from, static_cast<std::complex<float>*>(single->data()));
    return single;
}

enum class planes
{
    one,
    any
};

host::image_ref read_complex(const std::string& name, planes expected)
{
    const auto file = host::system_path(name);
    const auto wave = host::read_recorded_image(file);
    if (wave->type().meaning != host::element_class::complex)
        throw host::file_error{file, "contains " + one_line(*wave) + "; expected a complex wave"};
    if (wave->dimensions() < 2 || (expected == planes::one && wave->size(2) > 1))
        throw host::file_error{file, "contains " + one_line(*wave) + "; expected a wave of two " +
                                         (expected == planes::any ? "or three " : "") + "dimensions"};
    return in_single_precision(file, wave);
}

}  // namespace

host::image_ref read_wave(const std::string& name) { return with_dimensions(read_complex(name, planes::one), 2); }

host::image_ref read_waves(const std::string& name) { return read_complex(name, planes::any); }

host::image_ref with_dimensions(const host::image_ref& plane, std::size_t dimensions)
{
    if (plane->dimensions() == dimensions) return plane;
    const std::uint32_t sizes[] = {plane->size(0), plane->size(1), 1};
    const std::ptrdiff_t strides[] = {1, plane->size(0), 0};
    auto same = host::image::over(plane->name(), plane->code(), plane->data(), std::span{sizes}.first(dimensions),
                                  std::span{strides}.first(dimensions), host::access::write, plane);
    same->set_scale(plane->scale());
    return same;
}

void apply_nan_rule(const std::string& name, host::image& wave, nan_rule rule)
{
    const std::size_t count = host::count_not_finite(wave);
    if (count == 0) return;
    const std::string which =
        std::to_string(count) + " of " + std::to_string(wave.count()) + " pixels are infinite or not a number";
    if (count == wave.count()) throw host::file_error{host::system_path(name), "no pixel is a finite number"};
    if (rule == nan_rule::refuse)
        throw host::file_error{host::system_path(name), which + "; --nan zero or --nan mean replaces them"};
    const auto value = rule == nan_rule::mean ? host::mean_of_finite(wave) : std::complex<float>{};
    host::replace_not_finite(wave, value);
    std::cerr << "zentrix: " << name << ": " << which << "; replaced by " << host::number_text(value.real())
              << (value.imag() < 0 ? "" : "+") << host::number_text(value.imag()) << "i\n";
}

}  // namespace zentrix::program
