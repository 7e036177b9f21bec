#include "warp/warp.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <vector>

#include "image/errors.h"
#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace qorv;
using namespace qorv::warp;
using dm::image;
using std::ptrdiff_t;
using std::vector;
using support::for_each_place;
using support::message_of;

template <class T>
using part_of = typename warp::real_of<T>::type;

template <class T>
T number(double re, [[maybe_unused]] double im)
{
    if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(re);
    else
        return {static_cast<part_of<T>>(re), static_cast<part_of<T>>(im)};
}

template <class T>
class Warps : public testing::Test
{};
using element_types = testing::Types<float, double, std::complex<float>, std::complex<double>>;
TYPED_TEST_SUITE(Warps, element_types);

TYPED_TEST(Warps, ByWholePixelsMoveEveryBit)
{
    using T = TypeParam;
    using real = part_of<T>;
    const ptrdiff_t w = 7, h = 5, d = 3;
    std::mt19937 random{7};
    vector<T> pixels;
    const double special[] = {-0.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()};
    for (int i = 0; i < w * h * d; ++i)
        pixels.push_back(i % 5 == 0 ? number<T>(special[i % 3], special[(i + 1) % 3])
                                    : number<T>(random() % 512 / 2.0 - 100, random() % 64));
    const T fill = number<T>(17, -3);
    // Source seen mirrored along x and with its planes in reverse order; destination through every second element.
    const image<const T> source{pixels.data() + (w - 1) + (d - 1) * w * h, {w, h, d}, {-1, w, -w * h}};
    for (const auto& [sx, sy, sz] :
         {std::array{0, 0, 0}, {2, 0, 0}, {-1, 3, 0}, {0, -2, 1}, {-6, 4, -2}, {7, 0, 0}, {0, 0, 3}}) {
        vector<T> expected;
        for_each_place({w, h, d}, [&, sx = sx, sy = sy, sz = sz](ptrdiff_t x, ptrdiff_t y, ptrdiff_t z) {
            const ptrdiff_t u = x + sx, v = y + sy, t = z + sz;
            const bool inside = u >= 0 && u < w && v >= 0 && v < h && t >= 0 && t < d;
            expected.push_back(inside ? source(u, v, t) : fill);
        });
        const real x_shift = static_cast<real>(sx), y_shift = static_cast<real>(sy), z_shift = static_cast<real>(sz);
        const image<const real> dx{&x_shift, 1}, dy{&y_shift, 1}, dz{&z_shift, 1};
        const auto expect = [&](const char* name, auto&& call) {
            support::framed<T> room{2 * w * h * d};
            image<T> to{room.inside(), {w, h, d}, {2, 2 * w, 2 * w * h}};
            EXPECT_EQ(&call(to), &to);
            EXPECT_TRUE(support::same_bytes(support::pixels_of(to), expected))
                << name << " by " << sx << ", " << sy << ", " << sz;
            EXPECT_TRUE(room.frame_untouched());
        };
        const affine_matrix map{{{1, 0, 0, double(sx)}, {0, 1, 0, double(sy)}, {0, 0, 1, double(sz)}}};
        expect(
            "affine", [&](auto& to) -> auto& { return AffineWarp<T>(source, map, to, fill); });
        expect(
            "xyz", [&](auto& to) -> auto& { return LinearWarp<T>(source, dx, dy, dz, to, fill); });
        if (!sz)
            expect(
                "xy", [&](auto& to) -> auto& { return LinearWarpXY<T>(source, dx, dy, to, fill); });
        if (!sy && !sz)
            expect(
                "x", [&](auto& to) -> auto& { return LinearWarpX<T>(source, dx, to, fill); });
        if (!sx && !sz)
            expect(
                "y", [&](auto& to) -> auto& { return LinearWarpY<T>(source, dy, to, fill); });
        if (!sx && !sy)
            expect(
                "z", [&](auto& to) -> auto& { return LinearWarpZ<T>(source, dz, to, fill); });
    }
}

TYPED_TEST(Warps, ReproduceALinearRampBetweenThePixels)
{
    using T = TypeParam;
    using real = part_of<T>;
    const ptrdiff_t w = 9, h = 6, d = 4;                  // of the source
    const std::array<ptrdiff_t, 3> sizes{7, 8, 5};        // of the destination
    const auto ramp = [](double x, double y, double z) {  // all products and sums below are exact
        return number<T>(3 * x - 2 * y + 8 * z, x + 4 * y - z);
    };
    vector<T> pixels, result(7 * 8 * 5);
    for_each_place({w, h, d}, [&](auto... xyz) { pixels.push_back(ramp(double(xyz)...)); });
    const T outside = number<T>(-1000, 0);
    image<T> to{result.data(), 7, 8, 5};
    const auto expect_ramp_at = [&](auto&& place) {
        int inside = 0;
        for_each_place(sizes, [&](ptrdiff_t x, ptrdiff_t y, ptrdiff_t z) {
            const auto [u, v, t] = place(x, y, z);
            const bool within = u >= 0 && u <= w - 1 && v >= 0 && v <= h - 1 && t >= 0 && t <= d - 1;
            EXPECT_EQ(to(x, y, z), within ? ramp(u, v, t) : outside) << x << " " << y << " " << z;
            inside += within;
        });
        EXPECT_GT(inside, 50);
    };
    // A displacement for each element, for each row and for each plane.
    std::mt19937 random{2};
    vector<real> of_element(result.size()), of_row(8), of_plane(5);
    for (auto* moves : {&of_element, &of_row, &of_plane})
        for (real& v : *moves) v = static_cast<real>(random() % 32) / 8 - 2;
    const image<const real> dx{of_element.data(), 7, 8, 5}, dy{of_row.data(), 1, 8}, dz{of_plane.data(), 1, 1, 5};
    LinearWarp<T>({pixels.data(), w, h, d}, dx, dy, dz, to, outside);
    expect_ramp_at([&](ptrdiff_t x, ptrdiff_t y, ptrdiff_t z) {
        return std::array{double(x) + dx(x, y, z), double(y) + dy(0, y), double(z) + dz(0, 0, z)};
    });
    auto map = affine_in_plane(0.75, -0.25, 1, 0.125, 0.5, 0.75);
    map[0][2] = 0.5;
    map[2] = {-0.0625, 0.25, 0.5, 0.5};
    AffineWarp<T>({pixels.data(), w, h, d}, map, to, outside);
    expect_ramp_at([](auto... xyz) {
        const auto [x, y, z] = std::array{double(xyz)...};
        return std::array{0.75 * x - 0.25 * y + 0.5 * z + 1, 0.125 * x + 0.5 * y + 0.75,
                          -0.0625 * x + 0.25 * y + 0.5 * z + 0.5};
    });
}

TEST(Warps, FillAtNanDisplacementsAndSpreadNanPixels)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const vector<float> pixels{1, 2, nan, 4, 5};
    const vector<float> dx{0.5f, nan, -0.5f, 0.0f, 0.25f};
    vector<float> result(5);
    image<float> to{result.data(), 5};
    LinearWarpX<float>({pixels.data(), 5}, {dx.data(), 5}, to, 9.0f);
    // The fourth is on a pixel, whose neighbour is not read; the last is a quarter pixel outside.
    EXPECT_TRUE(support::same_bytes(support::one_nan(result), {1.5f, 9, nan, 4, 9}));
    // Between columns but on the last row: the NaN of the next row is not read.
    const vector<float> square{1, 2, nan, nan};
    const float half = 0.5f;
    image<float> corner{result.data(), 1, 1};
    LinearWarpX<float>({square.data(), 2, 2}, {&half, 1}, corner);
    EXPECT_EQ(result[0], 1.5f);
}

TEST(Warps, RefuseInThisOrderAndWriteNothing)
{
    vector<float> pixels(12, 1.0f), moves(12, 0.0f), result(12, 5.0f);
    image<float> to{result.data(), 4, 3}, same{pixels.data(), 4, 3}, empty{result.data(), 0, 3};
    const image<const float> source{pixels.data(), 4, 3}, none{nullptr, 4, 3}, narrow{moves.data(), 3, 3};
    const image<const float> at_destination{result.data(), 4, 3};
    const auto in_plane = affine_in_plane(1, 0, 0, 0, 1, 0);
    auto broken = in_plane;
    broken[2][3] = std::numeric_limits<double>::infinity();
    const std::pair<const char*, std::string> refusals[] = {
        {dm::errors::parameters_invalid, message_of([&] { LinearWarpX<float>(none, narrow, to); })},
        {dm::errors::parameters_invalid, message_of([&] { LinearWarpX<float>(source, none, to); })},
        {dm::errors::parameters_invalid, message_of([&] { LinearWarpY<float>(source, narrow, empty); })},
        {dm::errors::parameters_invalid, message_of([&] { AffineWarp<float>(source, broken, same); })},
        {dm::errors::different_size, message_of([&] { LinearWarpXY<float>(source, source, narrow, same); })},
        {dm::errors::out_of_place, message_of([&] { LinearWarpX<float>(source, source, same); })},
        {dm::errors::out_of_place, message_of([&] { LinearWarpZ<float>(source, at_destination, to); })},
        {dm::errors::out_of_place, message_of([&] { AffineWarp<float>(source, in_plane, same); })},
    };
    for (const auto& [expected, got] : refusals) EXPECT_EQ(got, expected);
    EXPECT_EQ(result, vector<float>(12, 5.0f));
    EXPECT_EQ(pixels, vector<float>(12, 1.0f));
}

}  // namespace
