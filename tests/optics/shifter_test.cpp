#include "optics/shifter.h"

#include "image/errors.h"
#include "tests/support/same_bytes.h"

#include <omp.h>
#include <bit>
#include <limits>
#include <random>
#include <tuple>

namespace {

using namespace qorv;
using namespace qorv::optics;
using support::framed;

/// Random bits, NaNs with payloads and infinities among them; every ninth part is a zero of either sign.
template <class T>
std::vector<std::complex<T>> noise(std::size_t count)
{
    using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    std::mt19937_64 random{count};
    std::vector<std::complex<T>> values(count);
    const auto number = [&] {
        const auto drawn = random();
        return drawn % 9 ? std::bit_cast<T>(static_cast<bits>(drawn >> 5)) : drawn % 2 ? T(0) : -T(0);
    };
    for (auto& value : values) value = {number(), number()};
    return values;
}

/// The sign rule on bits: the imaginary part changes sign where x + y is even, the real part elsewhere.
template <class T>
std::vector<std::complex<T>> flipped(std::vector<std::complex<T>> values, std::ptrdiff_t width)
{
    for (std::ptrdiff_t i = 0; i < std::ssize(values); ++i) {
        const bool odd = (i % width + i / width) % 2 != 0;
        auto* part = reinterpret_cast<unsigned char*>(&values[i]) + (odd ? 0 : sizeof(T));
        part[sizeof(T) - 1] ^= 0x80;
    }
    return values;
}

/// Runs a kernel into a guarded destination of `room` elements that starts `offset` elements off alignment.
template <class T>
testing::AssertionResult right(shift_kernel<T>* kernel, std::ptrdiff_t width, std::ptrdiff_t height,
                               std::ptrdiff_t room, std::ptrdiff_t offset = 0)
{
    const auto source = noise<T>(width * height);
    auto expected = flipped(source, width);
    expected.resize(room);
    framed<std::complex<T>> out(room + offset);
    kernel(source.data(), out.inside() + offset, width, height, room);
    const auto got = out.copy();
    if (!out.frame_untouched()) return testing::AssertionFailure() << "wrote outside";
    return support::same_bytes({got.begin() + offset, got.end()}, expected) << " at " << width << " x " << height;
}

TEST(Shifter, FollowsTheSignRuleAtEverySizeInEveryVariant)
{
    dm::read_processor_features();
    for (int n = 1; n <= 67; ++n)
        for (int m : {1, 2, 3, 4, 7, 12, 33, 64, 67})
            for (const auto& [w, h] : {std::pair{n, m}, {m, n}}) {
                for (const auto& variant : dm::runnable(shifter_variants()))
                    for (const int room : {w * h, w * h / 2, 0})
                        ASSERT_TRUE(right<float>(variant.function, w, h, room)) << variant.name;
                ASSERT_TRUE(right<double>(shift_half_plain<double>, w, h, w * h));
            }
}

TEST(Shifter, LargeImagesAreTheSameInAnyNumberOfThreadsAndAtAnyAlignment)
{
    const int before = omp_get_max_threads();
    for (const auto& [w, h] : {std::pair{1508, 1408}, {1523, 1427}, {1, 2'100'001}, {2'100'001, 1}, {300, 200}})
        for (const auto& [threads, offset] : {std::pair{1, 1}, {2, 0}, {2, 1}}) {
            omp_set_num_threads(threads);
            EXPECT_TRUE(right<float>(shift_half_sse2, w, h, w * h, offset)) << threads << " threads";
        }
    omp_set_num_threads(before);
}

TEST(Shifter, WorksInPlaceWithTheSwitchOnAndOff)
{
    const auto source = noise<float>(1200 * 1000);
    for (const int use_simd : {0, 1}) {
        dm::set_use_simd(use_simd);
        auto pixels = source;
        shift_half(pixels.data(), pixels.data(), 1200, 1000, 1200 * 1000);
        EXPECT_TRUE(support::same_bytes(pixels, flipped(source, 1200)));
    }
}

TEST(Shifter, AcceptsHalfTheSizeOfLinesAndQuadsOnly)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto message = [](std::ptrdiff_t width, std::ptrdiff_t height, double x, double y) {
        return support::message_of([=] { require_shift(width, height, x, y); });
    };
    for (const auto& [w, h] : {std::pair{12, 20}, {1, 64}, {64, 1}, {1, 7}, {65536, 65536}})
        EXPECT_EQ(message(w, h, w / 2, h / 2), "") << w << " x " << h;
    const std::tuple<int, int, double, double> refused[] = {{12, 10, 6, 5}, {10, 12, 5, 6}, {256, 256, 128, 127.9},
                                                            {1, 7, 0, 3.5}, {1, 64, 1, 32}, {256, 256, nan, 128}};
    for (const auto& [w, h, x, y] : refused)
        EXPECT_EQ(message(w, h, x, y), dm::errors::size_power_of_2) << w << " x " << h << " by " << x << ", " << y;
}

}  // namespace
