#include "host/objects/image.h"

#include "tests/host/engine/calls.h"

#include <numeric>

namespace {

using namespace zentrix::host;
using support::arguments;
using support::failure;
using support::number;
using sizes = std::vector<std::uint32_t>;

TEST(images, come_zeroed_with_their_sizes_or_say_why_not)
{
    for (const auto& type : all_elements()) {
        const auto made = image::create("a", type.code, sizes{3, 2, 4});
        const auto* bytes = static_cast<const unsigned char*>(made->data());
        EXPECT_EQ(std::accumulate(bytes, bytes + 24 * type.bytes, 0), 0) << type.name;
        EXPECT_EQ(made->stride(2), 6);
    }
    struct row
    {
        std::uint32_t code;
        sizes dimensions;
        const char* refused;
    };
    const row rows[] = {{2, {2, 2, 2, 2}, "num_dim <= kMaxDim"},
                        {2, {}, "An image needs at least one dimension."},
                        {2, {4, 0}, "An image of 4 x 0 elements is empty."},
                        {4, {4, 4}, "The data type 4 is unknown."},
                        {13,
                         {4000000000, 4000000000},
                         "There is not enough memory for an image of 4000000000 x 4000000000 elements of 16 bytes."},
                        {13,
                         {46340, 46340, 2000000000},
                         "There is not enough memory for an image of 46340 x 46340 x 2000000000 elements of 16 bytes."}};
    for (const auto& r : rows)
        EXPECT_EQ(support::message_of([&] { image::create("a", r.code, r.dimensions); }), r.refused);
}

TEST(images, over_other_memory_are_seen_through_their_strides)
{
    std::vector<double> memory(24);
    std::iota(memory.begin(), memory.end(), 0.0);
    auto owner = std::make_shared<int>();
    // Rows from the last to the first, columns exchanged with planes.
    const auto turned = image::over("v", 12, memory.data() + 8, sizes{2, 3, 4}, std::vector<std::ptrdiff_t>{12, -4, 1},
                                    access::read, owner);
    EXPECT_EQ(owner.use_count(), 2);
    const auto copy = turned->clone();
    for (int z = 0; z < 4; ++z)
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 2; ++x) EXPECT_EQ(copy->at<double>(x, y, z), x * 12 + (2 - y) * 4 + z);
    EXPECT_TRUE(copy->is_contiguous());
    EXPECT_FALSE(turned->is_contiguous());
    EXPECT_EQ(copy->fingerprint(), turned->fingerprint());
    EXPECT_EQ(support::message_of([&] { turned->lock(access::write); }),
              "image \"v\" (2 x 3 x 4, Real 8 Byte) is read-only.");
    turned->convert_to_float();
    EXPECT_EQ(owner.use_count(), 1);
    EXPECT_EQ(turned->code(), 2u);
    EXPECT_EQ(turned->at<float>(1, 0, 3), 23.0f);
    EXPECT_EQ(memory[23], 23.0);
}

TEST(images, convert_to_float_unless_complex_or_locked)
{
    const auto bytes = image::create("b", 9, sizes{2});
    bytes->at<std::int8_t>(1) = -128;
    bytes->lock(access::read);
    EXPECT_EQ(support::message_of([&] { bytes->convert_to_float(); }),
              "image \"b\" (2, Integer 1 Byte Signed) is locked and cannot be converted.");
    bytes->unlock(access::read);
    bytes->convert_to_float();
    EXPECT_EQ(bytes->at<float>(1), -128.0f);
    EXPECT_EQ(bytes->changes(), 1u);
    EXPECT_EQ(support::message_of([&] { image::create("c", 3, sizes{1})->convert_to_float(); }),
              "image \"c\" (1, Complex 8 Byte) cannot be converted to float.");
}

TEST(image_functions, make_and_tell)
{
    engine host;
    struct row
    {
        const char* maker;
        arguments kind;
        std::uint32_t code;
    };
    const script_value name = std::string{"n"};
    const row rows[] = {{"ComplexImage", {number(8)}, 3},
                        {"ComplexImage", {number(16)}, 13},
                        {"RealImage", {number(4)}, 2},
                        {"RealImage", {number(8)}, 12},
                        {"IntegerImage", {number(2), number(1)}, 1},
                        {"IntegerImage", {number(4), number(0)}, 11},
                        {"NewImage", {number(23)}, 23}};
    for (const auto& r : rows) {
        arguments given{name};
        given.insert(given.end(), r.kind.begin(), r.kind.end());
        given.insert(given.end(), {number(5), number(7)});
        const auto made = object_in<image>(host.call(r.maker, given));
        ASSERT_TRUE(made);
        const auto width = make_cell(), height = make_cell();
        host.call("GetSize", {made, width, height});
        EXPECT_EQ(made->code(), r.code);
        EXPECT_EQ(width->value, number(5));
        EXPECT_EQ(height->value, number(7));
        EXPECT_EQ(host.call("ImageGetDimensionSize", {made, number(1)}), number(7));
        EXPECT_EQ(host.call("ImageGetDimensionSize", {made, number(2)}), number(1));
        EXPECT_EQ(host.call("ImageGetNumDimensions", {made}), number(2));
        EXPECT_EQ(host.call("ImageGetDataElementByteSize", {made}), number(made->type().bytes));
        EXPECT_EQ(host.call("IsComplexDataType", {made, number(8)}), number(r.code == 3));
        EXPECT_EQ(host.call("IsRealDataType", {made, number(8)}), number(r.code == 12));
        EXPECT_EQ(host.call("ImageGetName", {made}), name);
        EXPECT_EQ(host.call("ImageIsValid", {made}), number(1));
        made->close();
        EXPECT_EQ(host.call("ImageIsValid", {made}), number(0));
    }
    EXPECT_EQ(host.call("ImageIsValid", {script_value{}}), number(0));
    EXPECT_EQ(failure(host, "ImageClone", {script_value{}}), "A null reference was passed where an object is needed.");
    EXPECT_EQ(failure(host, "RealImage", {name, number(2), number(5), number(7)}),
              "There is no such element type of 2 bytes.");
    EXPECT_EQ(failure(host, "NewImage", {name, number(2), number(1), number(1), number(1), number(1)}),
              "num_dim <= kMaxDim");
}

TEST(image_functions, lock_a_slice_of_an_image)
{
    engine host;
    const auto volume = image::create("v", 1, sizes{5, 4, 3});
    const auto slice = host.call(
        "NewImageDataSlice", {number(1), number(3), number(1), number(2), number(2), number(2), number(0), number(3)});
    host_data_slice unpacked{};
    host.call("ExtractImageDataSequenceFromScriptObjectOrFail", {slice, static_cast<void*>(&unpacked)});
    EXPECT_EQ(unpacked.start[1], 2);
    EXPECT_EQ(unpacked.extent[2], 3);

    const auto lock = object_in<script_object>(host.call("ImageGetLockedData", {volume, number(1), slice}));
    EXPECT_EQ(host.call("ImageData_CountSlices", {lock}), number(1));
    std::vector<script_value> request{lock, number(0), number(3)};
    std::vector<cell_ref> cells;
    for (int i = 0; i < 9; ++i) request.emplace_back(cells.emplace_back(make_cell()));
    const auto get = [&] { return host.call("ImageData_GetSlice", request); };
    EXPECT_EQ(support::message_of(get), "The memory of image \"v\" (5 x 4 x 3, Integer 2 Byte Signed) is not locked.");
    call_method(lock, "void LockMemory( ScriptObject self )");
    EXPECT_EQ(get(), script_value{static_cast<void*>(&volume->at<std::int16_t>(1, 2, 0))});
    const std::int64_t wanted[] = {3, 1, 0, 2, 1, 2, 5, 3, 20};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(cells[i]->value, number(wanted[i])) << i;
    EXPECT_EQ(host.report().locks.size(), 1u);
    call_method(lock, "void UnlockMemory( ScriptObject self )");
    EXPECT_EQ(host.report().locks.size(), 0u);
    request[1] = number(1);
    EXPECT_EQ(support::message_of(get), "The image data have no slice 1.");
    const auto outside = host.call(
        "NewImageDataSlice", {number(1), number(3), number(4), number(2), number(0), number(1), number(0), number(1)});
    EXPECT_EQ(failure(host, "ImageGetLockedData", {volume, number(1), outside}),
              "The slice reaches outside image \"v\" (5 x 4 x 3, Integer 2 Byte Signed).");
    EXPECT_EQ(failure(host, "ImageGetLockedData", {volume, number(4), {}}), "The access mode 4 is unknown.");
}

}  // namespace
