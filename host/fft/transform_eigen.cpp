#include <unsupported/Eigen/FFT>

#include <algorithm>
#include <future>
#include <thread>
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
        if (length == 1)  // Eigen would write beyond its scratch memory
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

/// Copy a line, moving the zero frequency from the start to the middle and back.
template <class T>
void to_middle(const std::complex<T>* line, std::complex<T>* centred, std::ptrdiff_t length)
{
    std::rotate_copy(line, line + (length - length / 2), line + length, centred);
}
template <class T>
void from_middle(const std::complex<T>* centred, std::complex<T>* line, std::ptrdiff_t length)
{
    std::rotate_copy(centred, centred + length / 2, centred + length, line);
}

/// Transform of one line in place, zero frequency of the spectrum in the middle.
template <class T>
class centred_transform
{
  public:
    centred_transform(fft_direction direction, std::ptrdiff_t longest)
        : direction_{direction}, transform_{direction}, from_(static_cast<std::size_t>(longest)), to_(from_.size())
    {}

    void operator()(std::complex<T>* line, std::ptrdiff_t length)
    {
        if (direction_ == fft_direction::forward) {
            transform_(to_.data(), line, length);
            to_middle(to_.data(), line, length);
        } else {
            from_middle(line, from_.data(), length);
            transform_(line, from_.data(), length);
        }
    }

  private:
    fft_direction direction_;
    line_transform<T> transform_;
    std::vector<std::complex<T>> from_, to_;
};

template <class T>
void transform_rows(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t first, std::ptrdiff_t last,
                    fft_direction direction)
{
    centred_transform<T> fft{direction, width};
    for (std::ptrdiff_t y = first; y < last; ++y) fft(pixels + y * width, width);
}

/// Columns are transformed in strips as wide as a cache line; single columns would use one pixel of each line fetched.
constexpr std::ptrdiff_t strip_width = 16;

template <class T>
void transform_strips(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, std::ptrdiff_t first,
                      std::ptrdiff_t last, fft_direction direction)
{
    centred_transform<T> fft{direction, height};
    const std::ptrdiff_t stride = height + 8;  // padded: columns of a power of two would map to the same cache set
    std::vector<std::complex<T>> strip(static_cast<std::size_t>(strip_width * stride));
    for (std::ptrdiff_t left = first * strip_width; left < std::min(last * strip_width, width); left += strip_width) {
        const std::ptrdiff_t count = std::min(strip_width, width - left);
        for (std::ptrdiff_t y = 0; y < height; ++y)
            for (std::ptrdiff_t x = 0; x < count; ++x) strip[x * stride + y] = pixels[y * width + left + x];
        for (std::ptrdiff_t x = 0; x < count; ++x) fft(&strip[x * stride], height);
        for (std::ptrdiff_t y = 0; y < height; ++y)
            for (std::ptrdiff_t x = 0; x < count; ++x) pixels[y * width + left + x] = strip[x * stride + y];
    }
}

/// Calls work(first, last) on `parts` parts of 0 to `count` in parallel. Rethrows an exception of one of them.
template <class F>
void in_parts(std::ptrdiff_t count, std::ptrdiff_t parts, F work)
{
    std::vector<std::future<void>> others;
    for (std::ptrdiff_t part = 1; part < parts; ++part)
        others.push_back(std::async(std::launch::async, work, count * part / parts, count * (part + 1) / parts));
    work(std::ptrdiff_t{0}, count / parts);
    for (auto& other : others) other.get();
}

/// One part for each processor; fewer for images so small that starting threads would take longer.
std::ptrdiff_t parts_for(std::ptrdiff_t pixel_count)
{
    constexpr std::ptrdiff_t worth_a_thread = 1 << 16;
    const std::ptrdiff_t processors = std::max(1U, std::thread::hardware_concurrency());
    return std::clamp<std::ptrdiff_t>(pixel_count / worth_a_thread, 1, processors);
}

}  // namespace

template <class T>
void transform(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, fft_direction direction)
{
    const std::ptrdiff_t parts = parts_for(width * height), strips = (width + strip_width - 1) / strip_width;
    in_parts(height, parts,
             [=](std::ptrdiff_t first, std::ptrdiff_t last) { transform_rows(pixels, width, first, last, direction); });
    in_parts(strips, parts, [=](std::ptrdiff_t first, std::ptrdiff_t last) {
        transform_strips(pixels, width, height, first, last, direction);
    });
}

template void transform(std::complex<float>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);
template void transform(std::complex<double>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);

}  // namespace zentrix::host
