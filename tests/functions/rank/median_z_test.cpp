#include "functions/rank/median_z.h"

#include "image/errors.h"
#include "tests/functions/rank/rank_pictures.h"

#include <algorithm>

using namespace qorv;
using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class MedianZ : public testing::Test
{};
using real_types = testing::Types<float, double>;
TYPED_TEST_SUITE(MedianZ, real_types);

TYPED_TEST(MedianZ, IsTheMiddleOfEachSortedColumn)
{
    using T = TypeParam;
    for (std::ptrdiff_t depth : {1, 2, 3, 4, 5, 8, 15, 16, 17, 33, 48, 63, 64, 65, 200, 700})
        for (std::ptrdiff_t width : {1, 5, 16, 35})
            for (content what : contents_without_special()) {
                const std::ptrdiff_t height = 3;
                const auto pixels = picture<T>(what, width * height * depth);
                const dm::image<const T> stack{pixels.data(), width, height, depth};
                const auto wanted = at_every_pixel(stack, [&](auto&, auto x, auto y) {
                    std::vector<T> column;
                    for (std::ptrdiff_t z = 0; z < depth; ++z) column.push_back(stack(x, y, z));
                    std::sort(column.begin(), column.end());
                    const T middle = column[std::size_t(depth / 2)];
                    return depth % 2 ? middle : (middle + column[std::size_t(depth / 2 - 1)]) * T(0.5);
                });
                ASSERT_TRUE(every_variant_gives(wanted, median_z_variants<T>::table, stack))
                    << depth << " deep, " << int(what);
            }
}

TYPED_TEST(MedianZ, EveryVariantGivesThePlainBitsOnAnyView)
{
    using T = TypeParam;
    for (std::ptrdiff_t n = 1; n <= 67; ++n)
        for (content what : all_contents())
            for (std::ptrdiff_t step : {1, 2}) {
                const typename dm::image<T>::extents sizes{n, 1 + n % 3, 1 + (n * 17) % 67};
                const auto pixels = picture<T>(what, sizes[0] * sizes[1] * sizes[2] * step);
                const dm::image<const T> stack{
                    pixels.data(), sizes, {step, sizes[0] * step, sizes[0] * sizes[1] * step}};
                const auto wanted = run(plain_of(median_z_variants<T>::table), stack);
                ASSERT_TRUE(every_variant_gives(wanted, median_z_variants<T>::table, stack))
                    << sizes[2] << " deep, " << int(what);
            }
}

TEST(MedianZEntry, RefusesOtherShapesAndMayWriteIntoItsOwnStack)
{
    std::vector<float> room(3 * 2 * 5), out(100, 3.0f);
    for (std::size_t i = 0; i < room.size(); ++i) room[i] = float((i * 7) % 30);
    const dm::image<const float> stack{room.data(), 3, 2, 5}, null_stack{nullptr, 3, 2, 5}, none{room.data(), 3, 2, 0};
    struct refusal
    {
        dm::image<const float> stack;
        dm::image<float> destination;
        const char* text;
    };
    for (const refusal& r : {refusal{null_stack, {out.data(), 9, 9}, dm::errors::parameters_invalid},
                             {stack, {nullptr, 3, 2}, dm::errors::parameters_invalid},
                             {none, {out.data(), 3, 2}, dm::errors::parameters_invalid},
                             {stack, {out.data(), 3, 3}, dm::errors::invalid_image_size},
                             {stack, {out.data(), 3, 2, 2}, dm::errors::invalid_image_size}})
        EXPECT_EQ(support::message_of([&] { median_z<float>(r.stack, r.destination); }), r.text);
    EXPECT_EQ(out, std::vector<float>(100, 3.0f));

    median_z<float>(stack, {out.data(), 3, 2});
    median_z<float>(stack, {room.data() + 12, 3, 2});
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + 6, room.begin() + 12));
}

}  // namespace
