#include "host/correction/test_pictures.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "host/correction/multiply_spectrum.h"
#include "host/fft/fft.h"
#include "lens/electron.h"

namespace zentrix::host {

namespace {

using complex = std::complex<float>;

constexpr std::uint32_t size = 512, shown_size = 160;

image_ref square(element_class kind, std::uint32_t side)
{
    const std::uint32_t sizes[] = {side, side};
    return image::create("test picture", code_of(kind, kind == element_class::complex ? 8 : 4), sizes);
}

complex* pixels_of(const image_ref& wave) { return static_cast<complex*>(wave->data()); }

template <class Value>
image_ref wave_of(Value value_at)
{
    auto wave = square(element_class::complex, size);
    for (std::uint32_t y = 0; y < size; ++y)
        for (std::uint32_t x = 0; x < size; ++x)
            pixels_of(wave)[y * size + x] =
                value_at(static_cast<float>(x) - size / 2, static_cast<float>(y) - size / 2);
    return wave;
}

image_ref point()
{
    return wave_of([](float x, float y) { return complex{std::exp(-(x * x + y * y) / 4)}; });
}

image_ref amorphous()
{
    std::mt19937 random{1};
    // The sum of twelve equal distributions is nearly normal, and the same with every compiler.
    const auto normal = [&] {
        float sum = -6;
        for (int i = 0; i < 12; ++i) sum += static_cast<float>(random()) / 4294967296.0F;
        return sum;
    };
    return wave_of([&](float, float) { return std::polar(1.0F, 0.05F * normal()); });
}

void aberrate(engine& engine, const image_ref& wave, double pixel_nm, const lens::aberrations& lens)
{
    lens::optics setup;
    setup.wavelength_nm = lens::electron_wavelength(300);
    setup.pixel_nm = pixel_nm;
    setup.lens = lens;
    multiply_spectrum(engine, wave, lens::arguments_for(setup, size, size, lens::direction::apply));
}

/// Replaces a wave by its diffractogram: the modulus of the intensity's spectrum.
void take_diffractogram(const image_ref& wave)
{
    complex* const pixels = pixels_of(wave);
    std::transform(pixels, pixels + wave->count(), pixels, [](complex value) { return complex{std::norm(value)}; });
    fft_plan{size, size}.forward(pixels);
    pixels[(size / 2) * size + size / 2] = 0;  // the mean
}

/// The mean modulus of the neighbours up to `reach` pixels away, in the middle of an image.
image_ref middle_of(const image_ref& wave, int reach)
{
    auto middle = square(element_class::real, shown_size);
    auto* const values = static_cast<float*>(middle->data());
    const int first = static_cast<int>(size - shown_size) / 2;
    for (int y = 0; y < static_cast<int>(shown_size); ++y)
        for (int x = 0; x < static_cast<int>(shown_size); ++x) {
            float sum = 0;
            for (int v = -reach; v <= reach; ++v)
                for (int u = -reach; u <= reach; ++u)
                    sum += std::abs(pixels_of(wave)[(first + y + v) * static_cast<int>(size) + first + x + u]);
            values[y * static_cast<int>(shown_size) + x] = sum;
        }
    return middle;
}

picture painted(const image_ref& values)
{
    picture made;
    paint_picture({*values, display_mode::real, palette::grey, limits_of(*values, display_mode::real)}, made);
    return made;
}

}  // namespace

std::vector<test_picture> test_pictures(engine& engine)
{
    using enum lens::coefficient;
    lens::aberrations line, comet, ellipse;
    line[C1] = {-20, 0};
    line[A1] = {20, 60};
    comet[B2] = {900, 60};
    ellipse[C1] = {-150, 0};
    ellipse[A1] = {60, 60};
    const image_ref first = point(), second = point(), third = amorphous();
    aberrate(engine, first, 0.02, line);
    aberrate(engine, second, 0.02, comet);
    aberrate(engine, third, 0.05, ellipse);
    take_diffractogram(third);
    return {{"A1 = 20 nm at 60\u00b0, C1 = \u221220 nm",
             "A point. Along 60\u00b0 / 2 = 30\u00b0 the two cancel, across it they add: a line at 120\u00b0.",
             painted(middle_of(first, 0))},
            {"B2 = 900 nm at 60\u00b0", "A point. The tail of the comet points to 60\u00b0.",
             painted(middle_of(second, 0))},
            {"C1 = \u2212150 nm, A1 = 60 nm at 60\u00b0",
             "The diffractogram of a thin amorphous object. Along 30\u00b0 the defocus is smallest and the rings are "
             "widest.",
             painted(middle_of(third, 2))}};
}

}  // namespace zentrix::host
