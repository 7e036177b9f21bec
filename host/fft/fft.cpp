#include "host/fft/fft.h"

#include <algorithm>

#include "host/fft/transform.h"

namespace zentrix::host {

namespace {

template <class T>
void backward(std::complex<T>* spectrum, std::ptrdiff_t width, std::ptrdiff_t height)
{
    transform(spectrum, width, height, fft_direction::backward);
    const T scale = T(1) / (static_cast<T>(width) * static_cast<T>(height));
    std::for_each(spectrum, spectrum + width * height, [&](std::complex<T>& value) { value *= scale; });
}

}  // namespace

void forward_fft(std::complex<float>* p, std::ptrdiff_t width, std::ptrdiff_t height)
{
    transform(p, width, height, fft_direction::forward);
}

void forward_fft(std::complex<double>* p, std::ptrdiff_t width, std::ptrdiff_t height)
{
    transform(p, width, height, fft_direction::forward);
}

void backward_fft(std::complex<float>* p, std::ptrdiff_t width, std::ptrdiff_t height) { backward(p, width, height); }
void backward_fft(std::complex<double>* p, std::ptrdiff_t width, std::ptrdiff_t height) { backward(p, width, height); }

}  // namespace zentrix::host
