#include "functions/rank/median_z.h"

#include "tests/functions/rank/rank_pictures.h"

using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class MedianZ : public testing::Test
{};
TYPED_TEST_SUITE(MedianZ, real_types);

TYPED_TEST(MedianZ, IsTheMiddleOfEachSortedColumnInEveryVariant)
{
    using T = TypeParam;
    const auto table = median_z_variants<T>();
    std::vector<extent> sizes{{16, 63}, {16, 64}, {16, 65}, {35, 200}, {5, 700}};  // width and depth
    for (std::ptrdiff_t n = 1; n <= 67; ++n) sizes.push_back({n, 1 + (n * 17) % 67});
    for (const extent& size : sizes)
        for (content what : ordered_contents) {
            const std::ptrdiff_t width = size[0], height = 1 + width % 3, depth = size[1];
            const auto pixels = picture<T>(what, width * height * depth);
            const image<const T> stack{pixels.data(), width, height, depth};
            const auto truth = at_every_pixel(stack, [&](auto x, auto y) {
                std::vector<T> column;
                for (std::ptrdiff_t z = 0; z < depth; ++z) column.push_back(stack(x, y, z));
                return median_by_sorting(column);
            });
            ASSERT_TRUE(every_variant_gives(truth, table, stack)) << depth << " deep, " << int(what);
        }
}

}  // namespace
