#include "image/errors.h"

#include "tests/script/destinations.h"

namespace {

using namespace script;

TEST(Errors, HaveTheirExactTexts)
{
    const auto of = [](std::uint32_t code, extents sizes = {10, 6}) { return whole_numbers(code, sizes); };
    const auto real = of(2), complex = of(3), doubles = of(12), whole = of(1), small = of(2, {4, 4});
    const script_value out = make_cell();
    const integer one{1}, eight{8};
    arguments transfer{real};
    transfer.resize(20, 0.1);
    transfer.insert(transfer.end(), {one, 0.1, null});
    const auto shifter = [&](const image_ref& source) { return arguments{source, one, one, 5., 3., 1., null}; };
    expect_refusals({
        {"ZXExp2", {real, small}, "Images of different size cannot appear in this function."},
        {"ZXMovingAverage", {whole, one, null}, "Invalid data type."},
        {"ZXExp2", {real, doubles}, "Invalid image type."},
        {"ZXMedianZ", {real, small}, "Invalid image size."},
        {"ZXMask", {complex, null, small, 1., 0., null}, "Invalid matrix size."},
        {"ZXFTWindow", {real, eight, null}, "Invalid mode."},
        {"ZXMaximumFilter", {real, one, real}, "Output should be out-of-place."},
        {"ZXMedian", {null}, "Parameters are invalid."},
        {"ZXImageShifterForSemper", shifter(complex), "Size of image should be power of 2."},
        {"ZXToDMDataType", {integer{10}}, "Unknown data type."},
        {"ZXMin", {complex, out, out, out}, "Data type should be Real."},
        {"ZXGoldstain", {doubles, one}, "Data type should be Real 4."},
        {"ZXHanningWindow", {whole, 1., 1., 1., null}, "Data type should be Real 4 or Real 8."},
        {"ZXMedian", {complex}, "All data type should be Real."},
        {"ZXFTWindow", {whole, one, null}, "All data type should be Real or Complex."},
        {"ZXCArg", {real, null}, "All data type should be Complex."},
        {"ZXWTFMulDLL", transfer, "All data type should be Complex 8."},
        {"ZXImageShifterForSemper", shifter(real), "All data type should be same Complex."},
    });
    // No image of the stand-alone host has more dimensions.
    EXPECT_STREQ(qorv::dm::errors::up_to_3d, "Dimension support is up to 3D now.");
}

}  // namespace
