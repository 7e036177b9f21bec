#include <unsupported/Eigen/FFT>

#include <algorithm>
#include <vector>

#include "host/fft/transform.h"

namespace zentrix::host {

namespace {

template <class T>
class line_transform
{
  public:
    explicit line_transform(fft_direction direction) : direction_{direction} { fft_.SetFlag(Eigen::FFT<T>::Unscaled); }

    void operator()(std::complex<T>* to, const std::complex<T>* from, std::ptrdiff_t length)
    {
        if (length == 1)  // Eigen's transform has no radix for it and would write beyond its scratch memory
            *to = *from;
        else if (direction_ == fft_direction::forward)
            fft_.fwd(to, from, length);
        else
            fft_.inv(to, from, length);
    }

  private:
    Eigen::FFT<T> fft_;
    fft_direction direction_;
};

}  // namespace

template <class T>
void transform(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, fft_direction direction)
{
    line_transform<T> fft{direction};
    std::vector<std::complex<T>> line(static_cast<std::size_t>(std::max(width, height)));
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        fft(line.data(), pixels + y * width, width);
        std::copy_n(line.data(), width, pixels + y * width);
    }
    // Columns go in strips of a cache line's width: a lone column would fetch each line of memory for one pixel.
    constexpr std::ptrdiff_t strip_width = 16;
    std::vector<std::complex<T>> strip(static_cast<std::size_t>(strip_width * height));
    for (std::ptrdiff_t left = 0; left < width; left += strip_width) {
        const std::ptrdiff_t count = std::min(strip_width, width - left);
        for (std::ptrdiff_t y = 0; y < height; ++y)
            for (std::ptrdiff_t x = 0; x < count; ++x) strip[x * height + y] = pixels[y * width + left + x];
        for (std::ptrdiff_t x = 0; x < count; ++x) {
            fft(line.data(), &strip[x * height], height);
            std::copy_n(line.data(), height, &strip[x * height]);
        }
        for (std::ptrdiff_t y = 0; y < height; ++y)
            for (std::ptrdiff_t x = 0; x < count; ++x) pixels[y * width + left + x] = strip[x * height + y];
    }
}

template void transform(std::complex<float>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);
template void transform(std::complex<double>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);

}  // namespace zentrix::host
