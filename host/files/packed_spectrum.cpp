#include "host/files/packed_spectrum.h"

#include <complex>

namespace zentrix::host {

namespace {

/// A spectrum by frequencies, both from minus half the size.
template <class T>
class hermitian
{
  public:
    explicit hermitian(image& spectrum)
        : pixels_{static_cast<std::complex<T>*>(spectrum.data())}, width_{spectrum.size(0)}, height_{spectrum.size(1)}
    {}
    /// Sets F(k) and F(-k).
    void set(std::ptrdiff_t kx, std::ptrdiff_t ky, std::complex<T> value)
    {
        at(-kx, -ky) = std::conj(value);
        at(kx, ky) = value;
    }

  private:
    std::complex<T>& at(std::ptrdiff_t kx, std::ptrdiff_t ky)
    {
        const std::ptrdiff_t x = (kx + width_ / 2 + width_) % width_, y = (ky + height_ / 2 + height_) % height_;
        return pixels_[x + y * width_];
    }

    std::complex<T>* pixels_;
    std::ptrdiff_t width_, height_;
};

template <class T>
void expand_shared_column(const std::complex<T>* packed, std::ptrdiff_t width, std::ptrdiff_t height, hermitian<T> to)
{
    const std::ptrdiff_t columns = width / 2, middle = height / 2;
    for (std::ptrdiff_t y = 0; y < height; ++y)
        for (std::ptrdiff_t x = 1; x < columns; ++x) to.set(x, y - middle, packed[x + y * columns]);
    for (const auto& [kx, first] : {std::pair{-columns, std::ptrdiff_t{0}}, std::pair{std::ptrdiff_t{0}, middle}}) {
        const std::complex<T> real_values = packed[first * columns];
        to.set(kx, 0, real_values.real());
        to.set(kx, -middle, real_values.imag());
        for (std::ptrdiff_t ky = 1; ky < middle; ++ky) to.set(kx, ky, packed[(first + ky) * columns]);
    }
}

template <class T>
void expand_full_column(const std::complex<T>* packed, std::ptrdiff_t width, std::ptrdiff_t height, hermitian<T> to)
{
    const std::ptrdiff_t columns = width / 2 + 1;
    for (std::ptrdiff_t y = 0; y < height; ++y)
        for (std::ptrdiff_t x = 0; x < columns; ++x) to.set(x, y - height / 2, std::conj(packed[x + y * columns]));
}

template <class T>
void expand(packing how, const void* packed, image& spectrum)
{
    const auto* values = static_cast<const std::complex<T>*>(packed);
    const std::ptrdiff_t width = spectrum.size(0), height = spectrum.size(1);
    if (how == packing::shared_column)
        expand_shared_column(values, width, height, hermitian<T>{spectrum});
    else
        expand_full_column(values, width, height, hermitian<T>{spectrum});
}

}  // namespace

std::uint64_t packed_bytes(packing how, std::uint64_t width, std::uint64_t height, std::uint64_t part) noexcept
{
    return (how == packing::shared_column ? width / 2 : width / 2 + 1) * height * 2 * part;
}

void expand_spectrum(packing how, const void* packed, image& spectrum)
{
    if (spectrum.code() == HOST_ELEMENT_COMPLEX64)
        expand<float>(how, packed, spectrum);
    else
        expand<double>(how, packed, spectrum);
}

}  // namespace zentrix::host
