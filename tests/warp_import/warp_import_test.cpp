// The exported warps as another module uses them: through the header and the linked library.
#include <gtest/gtest.h>

#include <complex>

#include "warp/warp.h"

namespace {

using namespace qorv;

TEST(Warps, AreCalledInTheLinkedLibrary)
{
    const std::complex<float> pixels[4] = {{1, 0}, {3, 2}, {5, 4}, {7, 6}};
    std::complex<float> result[4];
    dm::image<std::complex<float>> to{result, 2, 2};
    const float half = 0.5f;
    EXPECT_EQ(&warp::LinearWarpX<std::complex<float>>({pixels, 2, 2}, {&half, 1}, to), &to);
    EXPECT_EQ(result[0], std::complex<float>(2, 1));
    EXPECT_EQ(result[1], std::complex<float>());
    warp::AffineWarp<std::complex<float>>({pixels, 2, 2}, warp::affine_in_plane(-1, 0, 1, 0, -1, 1), to);
    EXPECT_EQ(result[0], pixels[3]);
    EXPECT_THROW(warp::AffineWarp<std::complex<float>>({nullptr, 2, 2}, {}, to), std::runtime_error);
}

}  // namespace
