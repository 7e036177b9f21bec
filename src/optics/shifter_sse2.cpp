#include "optics/shifter.h"
#include "optics/team_size.h"

#include <xmmintrin.h>
#include <algorithm>
#include <cstdint>

namespace qorv::optics {

namespace {

using pixel = std::complex<float>;

/// A line is divided into sections of this many pixels. Even, so that each starts at an even pixel.
constexpr std::ptrdiff_t section = 4096;

/// Below this size a second thread costs more than it saves.
constexpr std::ptrdiff_t shared_from_pixels = 1 << 15;

/// From this size on stores bypass the caches: the destination would be loaded only to be overwritten.
constexpr std::ptrdiff_t streamed_from_pixels = 1 << 21;

void keep(float* to, __m128 value) noexcept { _mm_storeu_ps(to, value); }
void stream(float* to, __m128 value) noexcept { _mm_stream_ps(to, value); }

template <auto store>
void flip_pairs(const float* from, float* to, std::ptrdiff_t pairs, __m128 signs) noexcept
{
    std::ptrdiff_t i = 0;
    for (; i + 4 <= pairs; i += 4, from += 16, to += 16) {
        const __m128 a = _mm_loadu_ps(from), b = _mm_loadu_ps(from + 4);
        const __m128 c = _mm_loadu_ps(from + 8), d = _mm_loadu_ps(from + 12);
        store(to, _mm_xor_ps(a, signs));
        store(to + 4, _mm_xor_ps(b, signs));
        store(to + 8, _mm_xor_ps(c, signs));
        store(to + 12, _mm_xor_ps(d, signs));
    }
    for (; i < pairs; ++i, from += 4, to += 4) store(to, _mm_xor_ps(_mm_loadu_ps(from), signs));
}

void flip_one(const pixel* from, pixel* to, bool odd) noexcept
{
    const pixel conjugate = std::conj(*from);
    *to = odd ? -conjugate : conjugate;
}

/// `count` pixels, the first of which has an odd x + y or not.
void conjugate_alternating(const pixel* from, pixel* to, std::ptrdiff_t count, bool odd, bool streamed) noexcept
{
    if (count <= 0) return;
    const auto address = reinterpret_cast<std::uintptr_t>(to);
    streamed = streamed && address % sizeof(pixel) == 0;
    if (streamed && address % sizeof(__m128) != 0) {
        flip_one(from++, to++, odd);
        --count;
        odd = !odd;
    }
    const __m128 signs = odd ? _mm_setr_ps(-0.f, 0.f, 0.f, -0.f) : _mm_setr_ps(0.f, -0.f, -0.f, 0.f);
    const auto* in = reinterpret_cast<const float*>(from);
    auto* out = reinterpret_cast<float*>(to);
    if (streamed)
        flip_pairs<stream>(in, out, count / 2, signs);
    else
        flip_pairs<keep>(in, out, count / 2, signs);
    if (count % 2 != 0) flip_one(from + count - 1, to + count - 1, odd);
}

}  // namespace

void shift_half_sse2(const pixel* source, pixel* destination, std::ptrdiff_t width, std::ptrdiff_t height,
                     std::ptrdiff_t room) noexcept
{
    const std::ptrdiff_t count = std::min(width * height, room);
    const bool line = width == 1 || height == 1;
    const std::ptrdiff_t row = line ? section : width;
    const std::ptrdiff_t rows = line ? (count + section - 1) / section : height;
    const bool streamed = count >= streamed_from_pixels && source != destination;
    const auto one_row = [&](std::ptrdiff_t y) {
        const bool odd = !line && y % 2 != 0;
        conjugate_alternating(source + y * row, destination + y * row, std::min(row, count - y * row), odd, streamed);
    };
    const int threads = count < shared_from_pixels ? 1 : team_size((rows + 1) / 2);
    if (threads == 1) {  // without the parallel runtime, which does not work in every process
        for (std::ptrdiff_t y = 0; y < rows; ++y) one_row(y);
        if (streamed) _mm_sfence();
        return;
    }
#pragma omp parallel num_threads(threads)
    {
#pragma omp for schedule(static) nowait
        for (std::ptrdiff_t y = 0; y < rows; y += 2) {
            one_row(y);
            if (y + 1 < rows) one_row(y + 1);
        }
        if (streamed) _mm_sfence();  // makes this thread's streaming stores visible before the threads join
    }
}

}  // namespace qorv::optics
