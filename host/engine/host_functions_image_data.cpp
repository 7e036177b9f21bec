#include "host/engine/host_functions.h"

namespace zentrix::host {

namespace {

constexpr std::size_t first_dimension_info = 6;  // of ImageData_GetSlice
constexpr std::size_t first_range = 2;           // of NewImageDataSlice

script_value locked_data(engine_state& state, const arguments& passed)
{
    const auto& part = passed.value(2);
    const auto slice = object_in<image_data_slice>(part);
    if (!slice && !is_null(part)) throw script_error{describe(part) + " is not an image data slice."};
    auto lock = std::make_shared<image_lock>(passed.picture(0), passed.integer_as<std::uint32_t>(1), slice.get(),
                                             state.records, state.options.check_read_locks);
    const std::lock_guard guard{state.locks_access};
    std::erase_if(state.locks, [](const auto& one) { return one.expired(); });
    state.locks.push_back(lock);
    return lock;
}

script_value get_slice(const arguments& passed)
{
    const auto lock = passed.object<image_lock>(0);
    if (passed.integer(1) >= lock->slices())
        throw script_error{"The image data have no slice " + std::to_string(passed.integer(1)) + "."};
    const auto dimensions = passed.integer_as<std::size_t>(2);
    if (dimensions > max_dimensions) throw script_error{"num_dim <= kMaxDim"};
    if (passed.size() != first_dimension_info + 2 * dimensions)
        throw script_error{"ImageData_GetSlice needs a size and a stride for each requested dimension."};
    for (std::size_t d = dimensions; d < lock->dimensions(); ++d)
        if (lock->size(d) > 1) throw script_error{"The image data have more dimensions than requested."};
    void* data = lock->data();
    passed.set(3, static_cast<std::int64_t>(lock->dimensions()));
    passed.set(4, std::int64_t{lock->locked().code()});
    passed.set(5, std::int64_t{0});  // not packed
    for (std::size_t d = 0; d < dimensions; ++d) {
        passed.set(first_dimension_info + 2 * d, std::int64_t{lock->size(d)});
        passed.set(first_dimension_info + 2 * d + 1, std::int64_t{lock->stride(d)});
    }
    return data;
}

script_value new_slice(const arguments& passed)
{
    const auto dimensions = passed.integer_as<std::size_t>(1);
    if (dimensions > max_dimensions) throw script_error{"num_dim <= kMaxDim"};
    if (dimensions == 0 || passed.size() != first_range + 2 * dimensions)
        throw script_error{"NewImageDataSlice needs a start and a size for each dimension."};
    host_data_slice slice{passed.integer_as<std::uint32_t>(0), passed.integer_as<std::uint32_t>(1), {}, {1, 1, 1}};
    element_of(slice.data_type);
    for (std::size_t d = 0; d < dimensions; ++d) {
        slice.start[d] = passed.integer_as<std::int32_t>(first_range + 2 * d);
        slice.extent[d] = passed.integer_as<std::int32_t>(first_range + 2 * d + 1);
        if (slice.start[d] < 0 || slice.extent[d] < 1)
            throw script_error{"An image data slice starts at 0 or later and has a positive size."};
    }
    return std::make_shared<image_data_slice>(slice);
}

}  // namespace

void register_image_data_functions(engine_state& state)
{
    state.add_host_function("ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )",
                            [&state](const arguments& passed) { return locked_data(state, passed); });
    state.add_host_function("uint32 ImageData_CountSlices( ScriptObject img_src )", [](const arguments& passed) {
        return std::int64_t{passed.object<image_lock>(0)->slices()};
    });
    state.add_host_function(
        "void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
        "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)",
        get_slice);
    state.add_host_function("ScriptObject NewImageDataSlice( uint32, uint32, long... )", new_slice);
    state.add_host_function("void ExtractImageDataSequenceFromScriptObjectOrFail( ScriptObject, void * )",
                            [](const arguments& passed) -> script_value {
                                auto* place = static_cast<host_data_slice*>(passed.pointer(1));
                                if (!place) throw script_error{"There is no place for the image data slice."};
                                *place = passed.object<image_data_slice>(0)->slice();
                                return {};
                            });
}

}  // namespace zentrix::host
