#include "optics/shifter.h"

#include "image/errors.h"

#include <algorithm>

namespace qorv::optics {

namespace {

/// `count` pixels, the first of which has an odd x + y or not.
template <class T>
void conjugate_alternating(const std::complex<T>* from, std::complex<T>* to, std::ptrdiff_t count, bool odd) noexcept
{
    // A pair is read before it is written, so that the compiler can vectorise although the images may be the same.
    const auto pairs = [&](auto rule) {
        const T* in = reinterpret_cast<const T*>(from);
        T* out = reinterpret_cast<T*>(to);
        for (std::ptrdiff_t i = 0; i + 1 < count; i += 2, in += 4, out += 4) rule(in[0], in[1], in[2], in[3], out);
    };
    const auto put = [](T* out, T a, T b, T c, T d) {
        out[0] = a;
        out[1] = b;
        out[2] = c;
        out[3] = d;
    };
    if (odd)
        pairs([&](T re0, T im0, T re1, T im1, T* out) { put(out, -re0, im0, re1, -im1); });
    else
        pairs([&](T re0, T im0, T re1, T im1, T* out) { put(out, re0, -im0, -re1, im1); });
    if (count % 2 != 0) {
        const std::complex<T> last = std::conj(from[count - 1]);
        to[count - 1] = odd ? -last : last;
    }
}

}  // namespace

void require_shift(std::ptrdiff_t width, std::ptrdiff_t height, double shift_x, double shift_y)
{
    const bool line = width == 1 || height == 1;
    const bool quads = width % 4 == 0 && height % 4 == 0;
    dm::require(line || quads, dm::errors::size_power_of_2);
    const bool centre = shift_x == static_cast<double>(width / 2) && shift_y == static_cast<double>(height / 2);
    dm::require(centre, dm::errors::size_power_of_2);
}

template <class T>
void shift_half_plain(const std::complex<T>* source, std::complex<T>* destination, std::ptrdiff_t width,
                      std::ptrdiff_t height, std::ptrdiff_t room) noexcept
{
    if (width == 1) std::swap(width, height);  // the pixels of a column are contiguous
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        const std::ptrdiff_t start = y * width;
        if (start >= room) return;
        conjugate_alternating(source + start, destination + start, std::min(width, room - start), y % 2 != 0);
    }
}

template shift_kernel<float> shift_half_plain<float>;
template shift_kernel<double> shift_half_plain<double>;

dm::variants<shift_kernel<float>> shifter_variants()
{
    static constexpr dm::variant<shift_kernel<float>> table[] = {
        {"sse2", dm::cpu::sse, shift_half_sse2},  // bit 25 decides; all processors of this platform have both
        {"plain", dm::cpu::none, shift_half_plain<float>}};
    return table;
}

void shift_half(const std::complex<float>* source, std::complex<float>* destination, std::ptrdiff_t width,
                std::ptrdiff_t height, std::ptrdiff_t room)
{
    dm::require(source && destination, dm::errors::parameters_invalid);
    dm::choose(shifter_variants()).function(source, destination, width, height, room);
}

void shift_half(const std::complex<double>* source, std::complex<double>* destination, std::ptrdiff_t width,
                std::ptrdiff_t height, std::ptrdiff_t room)
{
    dm::require(source && destination, dm::errors::parameters_invalid);
    shift_half_plain(source, destination, width, height, room);
}

}  // namespace qorv::optics
