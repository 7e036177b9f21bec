#include "host/objects/image.h"

#include "tests/host/engine/calls.h"

#include <numeric>

namespace {

using namespace zentrix::host;
using support::arguments;
using support::failure;
using support::number;
using sizes = std::vector<std::uint32_t>;

TEST(Images, StartAtZeroOrAreRefusedWithTheReason)
{
    for (const auto& type : all_elements()) {
        const auto made = image::create("a", type.code, sizes{3, 2, 4});
        const auto* bytes = static_cast<const unsigned char*>(made->data());
        EXPECT_EQ(std::accumulate(bytes, bytes + 24 * type.bytes, 0), 0) << type.name;
        EXPECT_EQ(made->stride(2), 6);
    }
    const auto refusal = [](std::uint32_t code, const sizes& dimensions) {
        return support::message_of([&] { image::create("a", code, dimensions); });
    };
    EXPECT_EQ(refusal(HOST_ELEMENT_INT8, {2, 2, 2, 2}), "num_dim <= kMaxDim");
    EXPECT_EQ(refusal(HOST_ELEMENT_INT8, {}), "An image needs at least one dimension.");
    EXPECT_EQ(refusal(HOST_ELEMENT_INT8, {4, 0}), "An image of 4 x 0 elements is empty.");
    EXPECT_EQ(refusal(4, {4, 4}), "The data type 4 is unknown.");
    EXPECT_EQ(refusal(HOST_ELEMENT_COMPLEX128, {46340, 46340, 2000000000}),
              "There is not enough memory for an image of 46340 x 46340 x 2000000000 elements of 16 bytes.");
}

TEST(Images, ReadTheCallersMemoryThroughStrides)
{
    std::vector<double> memory(24);
    std::iota(memory.begin(), memory.end(), 0.0);
    auto owner = std::make_shared<int>();
    // Rows from the last to the first, columns exchanged with planes.
    const auto turned = image::over("v", HOST_ELEMENT_FLOAT64, memory.data() + 8, sizes{2, 3, 4},
                                    std::vector<std::ptrdiff_t>{12, -4, 1}, access::read, owner);
    const auto copy = turned->clone();
    for (int z = 0; z < 4; ++z)
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 2; ++x) EXPECT_EQ(copy->at<double>(x, y, z), x * 12 + (2 - y) * 4 + z);
    EXPECT_EQ(copy->fingerprint(), turned->fingerprint());
    EXPECT_EQ(support::message_of([&] { turned->lock(access::write); }),
              "image \"v\" (2 x 3 x 4, Real 8 Byte) is read-only.");
    turned->convert_to_float();
    EXPECT_EQ(owner.use_count(), 1);
    EXPECT_EQ(turned->code(), HOST_ELEMENT_FLOAT32);
    EXPECT_EQ(turned->at<float>(1, 0, 3), 23.0f);
    EXPECT_EQ(memory[23], 23.0);
}

TEST(Images, ConvertToFloatUnlessComplexOrLocked)
{
    const auto bytes = image::create("b", HOST_ELEMENT_INT8, sizes{2});
    bytes->lock(access::read);
    EXPECT_EQ(support::message_of([&] { bytes->convert_to_float(); }),
              "image \"b\" (2, Integer 1 Byte Signed) is locked and cannot be converted.");
    EXPECT_EQ(support::message_of([&] { image::create("c", HOST_ELEMENT_COMPLEX64, sizes{1})->convert_to_float(); }),
              "image \"c\" (1, Complex 8 Byte) cannot be converted to float.");
}

TEST(ImageFunctions, KnowClosedImagesAndRefuseNull)
{
    engine host;
    const auto plane = image::create("p", HOST_ELEMENT_UINT8, sizes{5, 7});
    plane->close();
    EXPECT_EQ(host.call("ImageIsValid", {plane}), number(0));
    EXPECT_EQ(host.call("ImageIsValid", {script_value{}}), number(0));
    EXPECT_EQ(failure(host, "ImageClone", {script_value{}}), "A null reference was passed where an object is needed.");
    EXPECT_EQ(failure(host, "ImageGetDimensionSize", {plane, number(3)}), "An image has no dimension 3.");
}

TEST(ImageFunctions, LockASliceOfAnImage)
{
    engine host;
    const auto volume = image::create("v", HOST_ELEMENT_INT16, sizes{5, 4, 3});
    const auto slice_from = [&](std::int64_t x) {
        return host.call("NewImageDataSlice", {number(HOST_ELEMENT_INT16), number(3), number(x), number(2), number(2),
                                               number(2), number(0), number(3)});
    };
    const auto lock = object_in<script_object>(host.call("ImageGetLockedData", {volume, number(1), slice_from(1)}));
    std::vector<script_value> request{lock, number(0), number(3)};
    std::vector<cell_ref> cells;
    for (int i = 0; i < 9; ++i) request.emplace_back(cells.emplace_back(make_cell()));
    const auto get = [&] { return host.call("ImageData_GetSlice", request); };
    EXPECT_EQ(support::message_of(get), "The memory of image \"v\" (5 x 4 x 3, Integer 2 Byte Signed) is not locked.");
    call_method(lock, "void LockMemory( ScriptObject self )");
    EXPECT_EQ(get(), script_value{static_cast<void*>(&volume->at<std::int16_t>(1, 2, 0))});
    const std::int64_t expected[] = {3, 1, 0, 2, 1, 2, 5, 3, 20};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(cells[i]->value, number(expected[i])) << i;
    EXPECT_EQ(host.report().locks.size(), 1u);
    call_method(lock, "void UnlockMemory( ScriptObject self )");
    EXPECT_EQ(host.report().locks.size(), 0u);
    request[1] = number(1);
    EXPECT_EQ(support::message_of(get), "The image data have no slice 1.");
    EXPECT_EQ(failure(host, "ImageGetLockedData", {volume, number(1), slice_from(4)}),
              "The slice reaches outside image \"v\" (5 x 4 x 3, Integer 2 Byte Signed).");
    EXPECT_EQ(failure(host, "ImageGetLockedData", {volume, number(4), {}}), "The access mode 4 is unknown.");
}

}  // namespace
