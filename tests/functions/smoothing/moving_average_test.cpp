#include "functions/smoothing/moving_average.h"

#include "functions/smoothing/box_pass.h"
#include "functions/smoothing/box_slice.h"
#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace qorv;
using namespace qorv::functions;
using namespace support;
using extents = dm::image<float>::extents;

template <class T>
class moving_average_test : public testing::Test
{
  protected:
    void SetUp() override { dm::read_processor_features(); }
};
using pixel_types = testing::Types<float, double, std::complex<float>, std::complex<double>>;
TYPED_TEST_SUITE(moving_average_test, pixel_types);

const std::ptrdiff_t radii[] = {0, 1, 2, 3, 5, 8, 20, 66, 67, 68, 2147483647};

double magnitude(const auto& value) { return std::abs(std::complex<double>(value)); }

/// Errors are a few roundings of numbers as large as the sum of the window.
template <class T>
double tolerance(std::ptrdiff_t samples)
{
    const double unit = sizeof(T) == sizeof(std::complex<double>) || std::is_same_v<T, double> ? 1e-15 : 6e-7;
    return unit * 1000 * static_cast<double>(samples + 4);
}

/// The sum of the samples within the radius by the divisor of the one-dimensional pass.
template <class T>
std::complex<double> one_sided_mean(const std::vector<T>& line, std::ptrdiff_t i, std::ptrdiff_t r)
{
    const auto n = static_cast<std::ptrdiff_t>(line.size());
    std::complex<double> sum = 0;
    for (std::ptrdiff_t k = 0; k < n; ++k)
        if (std::abs(k - i) <= r) sum += std::complex<double>(line[k]);
    const bool at_end = i + r >= n;
    return sum / static_cast<double>(at_end ? n - i + r : std::min(i + r + 1, 2 * r + 1));
}

TYPED_TEST(moving_average_test, PassDividesByAWindowClippedOnOneSide)
{
    for (const auto& row : dm::runnable(box_pass_variants<TypeParam>()))
        for (int along = 0; along < 3; ++along)
            for (std::ptrdiff_t n : {1, 2, 3, 5, 21, 67})
                for (std::ptrdiff_t r : radii) {
                    extents sizes{5, 6, 4};
                    sizes[along] = n;
                    const canvas<TypeParam> from{sizes, gapped}, to{sizes, sparse, 2};
                    row.function(from.view(), to.view(), axis{along}, r)();
                    std::vector<TypeParam> line;
                    const auto at = [&](const auto& view, std::ptrdiff_t i) {
                        extents p{2, 1, 3};
                        p[along] = i;
                        return view(p[0], p[1], p[2]);
                    };
                    for (std::ptrdiff_t i = 0; i < n; ++i) line.push_back(at(from.view(), i));
                    for (std::ptrdiff_t i = 0; i < n; ++i)
                        ASSERT_LE(magnitude(std::complex<double>(at(to.view(), i)) - one_sided_mean(line, i, r)),
                                  tolerance<TypeParam>(n))
                            << row.name << " axis " << along << " n " << n << " r " << r << " i " << i;
                }
}

TYPED_TEST(moving_average_test, PlaneDividesByThePixelsInTheClippedRectangle)
{
    for (const auto& [nx, ny] : {std::pair{1, 1}, {1, 9}, {9, 1}, {7, 4}, {40, 21}})
        for (std::ptrdiff_t r : radii) {
            const canvas<TypeParam> from{{nx, ny, 1}}, mean{{nx, ny, 1}, gapped}, squares{{nx, ny, 1}};
            moving_average2(from.view(), mean.view(), squares.view(), r);
            for (std::ptrdiff_t y = 0; y < ny; ++y)
                for (std::ptrdiff_t x = 0; x < nx; ++x) {
                    std::complex<double> sum = 0, sum2 = 0;
                    double count = 0;
                    for (std::ptrdiff_t v = std::max<std::ptrdiff_t>(y - r, 0); v <= y + r && v < ny; ++v)
                        for (std::ptrdiff_t u = std::max<std::ptrdiff_t>(x - r, 0); u <= x + r && u < nx; ++u) {
                            const std::complex<double> value(from.view()(u, v));
                            sum += value, sum2 += value * value, ++count;
                        }
                    const std::complex<double> one(mean.view()(x, y)), two(squares.view()(x, y));
                    ASSERT_LE(std::abs(one - sum / count), tolerance<TypeParam>(nx + ny)) << r;
                    ASSERT_LE(std::abs(two - sum2 / count), 1000 * tolerance<TypeParam>(nx + ny)) << r;
                }
        }
}

TYPED_TEST(moving_average_test, ANanRemainsInTheRunningSumToTheEnd)
{
    const canvas<TypeParam> from{{37, 29, 1}}, x{{37, 29, 1}}, y{{37, 29, 1}}, plane{{37, 29, 1}};
    from.view()(20, 11) = std::numeric_limits<float>::quiet_NaN();
    box_pass_plain<TypeParam>(from.view(), x.view(), axis::x, 2)();
    box_pass_plain<TypeParam>(from.view(), y.view(), axis::y, 2)();
    box_slice_plain<TypeParam>(from.view(), plane.view(), 2)();
    for (const auto& reached : {x.view()(36, 11), y.view()(20, 28), plane.view()(18, 28)})
        EXPECT_TRUE(std::isnan(magnitude(reached)));
}

TYPED_TEST(moving_average_test, RadiusZeroKeepsEveryPixel)
{
    const canvas<TypeParam> from{{19, 7, 3}}, to{{19, 7, 3}, gapped, 2}, before{{19, 7, 3}};
    for (const auto& image : {from.view(), before.view()}) {
        image(4, 2, 1) = std::numeric_limits<float>::quiet_NaN();
        image(5, 5, 0) = -0.0f;
    }
    for (const auto& destination : {&to, &from}) {
        moving_average(from.view(), destination->view(), 0);
        EXPECT_TRUE(support::same_bytes(destination->pixels(), before.pixels()));
    }
}

TYPED_TEST(moving_average_test, OutOfPlaceIsPlanesAndThenAPassOverTheWrittenPlanes)
{
    for (const std::ptrdiff_t planes : {1, 3, 5, 6}) {
        const canvas<TypeParam> from{{9, 8, 5}}, to{{9, 8, planes}, gapped, 2}, expected{{9, 8, planes}, dense, 2};
        moving_average(from.view(), to.view(), 2);
        const std::ptrdiff_t written = std::min<std::ptrdiff_t>(planes, 5);
        for (std::ptrdiff_t z = 0; z < written; ++z)
            box_slice_plain<TypeParam>(from.view().plane(z), expected.view().plane(z), 2)();
        const dm::image<TypeParam> both{expected.view().data(), 9, 8, written};
        if (written > 1) box_pass_plain<TypeParam>(both, both, axis::z, 2)();
        EXPECT_TRUE(support::same_bytes(to.pixels(), expected.pixels())) << planes;
        EXPECT_TRUE(to.gaps_untouched());
    }
}

}  // namespace
