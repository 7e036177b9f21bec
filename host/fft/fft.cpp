#include "host/fft/fft.h"

#include <algorithm>

#include "host/fft/transform.h"

namespace zentrix::host {

namespace {

/// Moves pixel (x, y) to ((x + right) mod width, (y + down) mod height).
template <class T>
void roll(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, std::ptrdiff_t right,
          std::ptrdiff_t down)
{
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        std::complex<T>* const row = pixels + y * width;
        std::rotate(row, row + (width - right), row + width);
    }
    std::rotate(pixels, pixels + (height - down) * width, pixels + height * width);
}

template <class T>
void forward(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height)
{
    transform(pixels, width, height, fft_direction::forward);
    roll(pixels, width, height, width / 2, height / 2);
}

template <class T>
void backward(std::complex<T>* spectrum, std::ptrdiff_t width, std::ptrdiff_t height)
{
    roll(spectrum, width, height, width - width / 2, height - height / 2);
    transform(spectrum, width, height, fft_direction::backward);
    const T scale = T(1) / (static_cast<T>(width) * static_cast<T>(height));
    std::for_each(spectrum, spectrum + width * height, [&](std::complex<T>& value) { value *= scale; });
}

}  // namespace

void forward_fft(std::complex<float>* p, std::ptrdiff_t width, std::ptrdiff_t height) { forward(p, width, height); }
void forward_fft(std::complex<double>* p, std::ptrdiff_t width, std::ptrdiff_t height) { forward(p, width, height); }
void backward_fft(std::complex<float>* p, std::ptrdiff_t width, std::ptrdiff_t height) { backward(p, width, height); }
void backward_fft(std::complex<double>* p, std::ptrdiff_t width, std::ptrdiff_t height) { backward(p, width, height); }

}  // namespace zentrix::host
