#include "functions/transpose/transpose.h"

#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace qorv;
using namespace qorv::functions;
using support::canvas;
using extents = dm::image<float>::extents;

template <std::size_t n>
struct element
{
    std::array<std::uint8_t, n> bytes;
    explicit element(double seed = 0)
    {
        std::uint32_t state = static_cast<std::uint32_t>(static_cast<std::int64_t>(seed * 1000)) * 2654435761u + 1;
        for (auto& b : bytes) b = static_cast<std::uint8_t>((state = state * 1664525u + 1013904223u) >> 24);
    }
    friend void PrintTo(const element& e, std::ostream* out) { *out << testing::PrintToString(e.bytes); }
};

template <class T>
class transpose_test : public testing::Test
{
  protected:
    void SetUp() override { dm::read_processor_features(); }
};
using elements = testing::Types<element<1>, element<2>, element<3>, element<4>, element<8>, element<12>, element<16>>;
TYPED_TEST_SUITE(transpose_test, elements);

extents transposed(extents sizes, transposition which)
{
    std::swap(sizes[which == transposition::xz ? 0 : 1], sizes[2]);
    return sizes;
}

const extents volumes[] = {{1, 1, 1},   {7, 5, 1},    {1, 5, 7},     {9, 1, 4},    {67, 3, 67},
                           {64, 2, 65}, {33, 31, 17}, {130, 2, 300}, {16, 16, 16}, {5, 66, 66}};

TYPED_TEST(transpose_test, MovesEachElementToItsMirrorPlace)
{
    for (const auto& row : dm::runnable(transpose_variants()))
        for (const auto which : {transposition::xz, transposition::yz})
            for (const extents& sizes : volumes)
                for (const auto& how : {support::dense, support::gapped, support::sparse}) {
                    const canvas<TypeParam> from{sizes, how}, to{transposed(sizes, which), how, 2};
                    row.function(voxels_of(from.view()), voxels_of(to.view()), sizeof(TypeParam), which);
                    std::vector<TypeParam> expected;
                    support::for_each_place(to.view().sizes(), [&](auto x, auto y, auto z) {
                        expected.push_back(which == transposition::xz ? from.view()(z, y, x) : from.view()(x, z, y));
                    });
                    ASSERT_TRUE(support::same_bytes(to.pixels(), expected))
                        << row.name << " " << testing::PrintToString(sizes);
                    ASSERT_TRUE(to.gaps_untouched());
                    if (sizes != to.view().sizes()) continue;
                    const voxels own = voxels_of(from.view());
                    row.function(own, own, sizeof(TypeParam), which);
                    ASSERT_TRUE(support::same_bytes(from.pixels(), expected)) << row.name << " in place";
                    ASSERT_TRUE(from.gaps_untouched());
                }
}

}  // namespace
