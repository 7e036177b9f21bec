#include <fftw3.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include "host/fft/transform.h"

namespace zentrix::host {

namespace {

/// FFTW's functions for one precision; those for float are in another library, with another prefix.
template <class T>
struct fftw;

template <>
struct fftw<float>
{
    using complex = fftwf_complex;
    static constexpr auto plan = fftwf_plan_dft_2d;
    static constexpr auto execute = fftwf_execute;
    static constexpr auto destroy = fftwf_destroy_plan;
};

template <>
struct fftw<double>
{
    using complex = fftw_complex;
    static constexpr auto plan = fftw_plan_dft_2d;
    static constexpr auto execute = fftw_execute;
    static constexpr auto destroy = fftw_destroy_plan;
};

/// FFTW ends the process when an allocation fails, so try beforehand what it may need. Measured were up to 6.3 complex
/// numbers per row and column (for prime sizes), or 1.3 MB.
template <class T>
void require_memory_for_plan(std::ptrdiff_t width, std::ptrdiff_t height)
{
    const auto bytes = (std::size_t{4} << 20) + 8 * sizeof(std::complex<T>) * static_cast<std::size_t>(width + height);
    void* volatile const trial = std::malloc(bytes);  // volatile: the compiler may drop an unused allocation
    if (trial == nullptr) throw std::bad_alloc{};
    std::free(trial);
}

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

}  // namespace

template <class T>
void transform(std::complex<T>* pixels, std::ptrdiff_t width, std::ptrdiff_t height, fft_direction direction)
{
    require_memory_for_plan<T>(width, height);
    auto* const data = reinterpret_cast<typename fftw<T>::complex*>(pixels);
    // Each size is transformed once or twice in a run, so measuring plans would not pay. An estimate also gives the
    // same plan, and so the same bits, in every run.
    auto* const plan = fftw<T>::plan(static_cast<int>(height), static_cast<int>(width), data, data,
                                     direction == fft_direction::forward ? FFTW_FORWARD : FFTW_BACKWARD, FFTW_ESTIMATE);
    if (plan == nullptr) throw std::bad_alloc{};
    const std::unique_ptr<std::remove_pointer_t<decltype(plan)>, decltype(fftw<T>::destroy)> owned{plan,
                                                                                                   fftw<T>::destroy};
    if (direction == fft_direction::backward) roll(pixels, width, height, width - width / 2, height - height / 2);
    fftw<T>::execute(plan);
    if (direction == fft_direction::forward) roll(pixels, width, height, width / 2, height / 2);
}

template void transform(std::complex<float>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);
template void transform(std::complex<double>*, std::ptrdiff_t, std::ptrdiff_t, fft_direction);

}  // namespace zentrix::host
