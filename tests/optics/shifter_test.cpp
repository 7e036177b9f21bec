#include "optics/shifter.h"

#include "image/errors.h"
#include "tests/support/same_bytes.h"

#include <omp.h>
#include <bit>
#include <limits>
#include <random>

namespace {

using namespace qorv;
using namespace qorv::optics;
using support::framed;

/// Noise with zeros of both signs, infinities and NaNs of both signs and with payloads among it.
template <class T>
std::vector<std::complex<T>> noise(std::size_t count)
{
    using limits = std::numeric_limits<T>;
    const T special[] = {T(0), -T(0), limits::infinity(), -limits::infinity(), limits::denorm_min()};
    using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    const auto odd_nan = std::bit_cast<T>(std::bit_cast<bits>(-limits::quiet_NaN()) | 0x1234u);
    std::mt19937 random{static_cast<unsigned>(count)};
    std::normal_distribution<T> normal;
    const auto number = [&] {
        const auto kind = random() % 16;
        return kind < 5 ? special[kind] : kind == 5 ? odd_nan : normal(random);
    };
    std::vector<std::complex<T>> values(count);
    for (auto& value : values) value = {number(), number()};
    return values;
}

/// The sign rule on the bits themselves: the imaginary part flips where x + y is even, the real part elsewhere.
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

/// Runs a kernel into a guarded destination of `room` elements.
template <class T>
testing::AssertionResult right(shift_kernel<T>* kernel, std::ptrdiff_t width, std::ptrdiff_t height,
                               std::ptrdiff_t room)
{
    const auto source = noise<T>(width * height);
    auto wanted = flipped(source, width);
    wanted.resize(room);
    framed<std::complex<T>> out(room);
    kernel(source.data(), out.inside(), width, height, room);
    if (!out.frame_untouched()) return testing::AssertionFailure() << "wrote outside";
    return support::same_bytes(out.copy(), wanted) << " at " << width << " x " << height;
}

TEST(shifter, follows_the_sign_rule_at_every_size_in_every_variant)
{
    dm::read_processor_features();
    std::vector<std::pair<int, int>> sizes;
    for (int n = 1; n <= 67; ++n)
        for (int m : {1, 2, 3, 4, 7, 12, 33, 64, 67}) sizes.insert(sizes.end(), {{n, m}, {m, n}});
    for (auto [w, h] : sizes) {
        for (const auto& variant : dm::runnable(shifter_variants))
            for (const int room : {w * h, w * h / 2, 0})
                ASSERT_TRUE(right<float>(variant.function, w, h, room)) << variant.name;
        ASSERT_TRUE(right<double>(shift_half_plain<double>, w, h, w * h));
    }
}

TEST(shifter, large_images_are_the_same_in_any_number_of_threads_and_at_any_alignment)
{
    const int before = omp_get_max_threads();
    for (auto [w, h] : {std::pair{1508, 1408}, {1523, 1427}, {1, 2'100'001}, {2'100'001, 1}, {300, 200}}) {
        const auto source = noise<float>(w * h);
        const auto wanted = flipped(source, w);
        for (auto [threads, offset] : {std::pair{1, 0}, {1, 1}, {2, 0}, {2, 1}}) {
            omp_set_num_threads(threads);
            framed<std::complex<float>> out(w * h + offset);
            shift_half_sse2(source.data(), out.inside() + offset, w, h, w * h);
            const auto got = out.copy();
            EXPECT_TRUE(support::same_bytes({got.begin() + offset, got.end()}, wanted)) << w << ' ' << h;
            EXPECT_TRUE(out.frame_untouched());
        }
    }
    omp_set_num_threads(before);
}

TEST(shifter, follows_the_sign_rule_in_place_whatever_the_switch_says)
{
    const auto source = noise<float>(1200 * 1000);
    for (const int use_simd : {0, 1}) {
        dm::set_use_simd(use_simd);
        auto pixels = source;
        shift_half(pixels.data(), pixels.data(), 1200, 1000, 1200 * 1000);
        EXPECT_TRUE(support::same_bytes(pixels, flipped(source, 1200)));
    }
}

TEST(shifter, accepts_half_the_size_of_lines_and_quads_only)
{
    struct row
    {
        std::ptrdiff_t width, height;
        double x, y;
        bool accepted;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const row rows[] = {{12, 20, 6, 10, true},         {1, 64, 0, 32, true},
                        {64, 1, 32, 0, true},          {1, 7, 0, 3, true},
                        {1, 1, 0, -0.0, true},         {12, 10, 6, 5, false},
                        {10, 12, 5, 6, false},         {256, 256, 128.5, 128, false},
                        {256, 256, 128, 127.9, false}, {1, 7, 0, 3.5, false},
                        {1, 64, 1, 32, false},         {64, 1, 32, 1, false},
                        {256, 256, nan, 128, false},   {65536, 65536, 32768, 32768, true}};
    for (const auto& r : rows)
        EXPECT_EQ(support::message_of([&] { require_shift(r.width, r.height, r.x, r.y); }),
                  r.accepted ? "" : dm::errors::size_power_of_2)
            << r.width << " x " << r.height << " by " << r.x << ", " << r.y;
    std::complex<double> one;
    EXPECT_EQ(support::message_of([&] { shift_half(&one, nullptr, 1, 1, 1); }), dm::errors::parameters_invalid);
}

}  // namespace
