#include "host/engine/arguments.h"
#include "host/engine/engine_state.h"

namespace zentrix::host {

namespace {

using values = std::span<const script_value>;

constexpr std::size_t first_dimension_info = 6;  // of ImageData_GetSlice
constexpr std::size_t first_range = 2;           // of NewImageDataSlice

script_value locked_data(engine::inside& in, const arguments& given, const script_value& part)
{
    const auto slice = object_in<image_data_slice>(part);
    if (!slice && !is_null(part)) throw script_error{describe(part) + " is not an image data slice."};
    auto lock = std::make_shared<image_lock>(given.picture(0), given.integer_as<std::uint32_t>(1), slice.get(),
                                             in.records, in.options.check_read_locks);
    std::erase_if(in.locks, [](const auto& one) { return one.expired(); });
    in.locks.push_back(lock);
    return lock;
}

script_value get_slice(const arguments& given)
{
    const auto lock = given.object<image_lock>(0);
    if (given.integer(1) >= lock->slices())
        throw script_error{"The image data have no slice " + std::to_string(given.integer(1)) + "."};
    const auto wanted = given.integer_as<std::size_t>(2);
    if (wanted > max_dimensions) throw script_error{"num_dim <= kMaxDim"};
    if (given.size() != first_dimension_info + 2 * wanted)
        throw script_error{"ImageData_GetSlice needs a size and a stride for each dimension asked for."};
    for (std::size_t d = wanted; d < lock->dimensions(); ++d)
        if (lock->size(d) > 1) throw script_error{"The image data have more dimensions than asked for."};
    void* data = lock->data();
    given.set(3, static_cast<std::int64_t>(lock->dimensions()));
    given.set(4, std::int64_t{lock->locked().code()});
    given.set(5, std::int64_t{0});  // not packed
    for (std::size_t d = 0; d < wanted; ++d) {
        given.set(first_dimension_info + 2 * d, std::int64_t{lock->size(d)});
        given.set(first_dimension_info + 2 * d + 1, std::int64_t{lock->stride(d)});
    }
    return data;
}

script_value new_slice(const arguments& given)
{
    const auto dimensions = given.integer_as<std::size_t>(1);
    if (dimensions > max_dimensions) throw script_error{"num_dim <= kMaxDim"};
    if (dimensions == 0 || given.size() != first_range + 2 * dimensions)
        throw script_error{"NewImageDataSlice needs a start and a size for each dimension."};
    host_data_slice slice{given.integer_as<std::uint32_t>(0), given.integer_as<std::uint32_t>(1), {}, {1, 1, 1}};
    element_of(slice.data_type);
    for (std::size_t d = 0; d < dimensions; ++d) {
        slice.start[d] = given.integer_as<std::int32_t>(first_range + 2 * d);
        slice.extent[d] = given.integer_as<std::int32_t>(first_range + 2 * d + 1);
        if (slice.start[d] < 0 || slice.extent[d] < 1)
            throw script_error{"An image data slice starts at 0 or later and has a positive size."};
    }
    return std::make_shared<image_data_slice>(slice);
}

}  // namespace

void add_image_data_functions(engine::inside& to)
{
    to.add_host_function("ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )",
                         [&to](values list) { return locked_data(to, arguments{list}, list[2]); });
    to.add_host_function("uint32 ImageData_CountSlices( ScriptObject img_src )",
                         [](values list) { return std::int64_t{arguments{list}.object<image_lock>(0)->slices()}; });
    to.add_host_function(
        "void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
        "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)",
        [](values list) { return get_slice(arguments{list}); });
    to.add_host_function("ScriptObject NewImageDataSlice( uint32, uint32, long... )",
                         [](values list) { return new_slice(arguments{list}); });
    to.add_host_function("void ExtractImageDataSequenceFromScriptObjectOrFail( ScriptObject, void * )",
                         [](values list) -> script_value {
                             const arguments given{list};
                             auto* place = static_cast<host_data_slice*>(given.pointer(1));
                             if (!place) throw script_error{"There is no place for the image data slice."};
                             *place = given.object<image_data_slice>(0)->slice();
                             return {};
                         });
}

}  // namespace zentrix::host
