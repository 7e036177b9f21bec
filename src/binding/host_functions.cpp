#include "binding/host_functions.h"

#include <stdexcept>

namespace qorv::binding {
namespace {

constexpr char too_many_dimensions[] = "num_dim <= kMaxDim";

}  // namespace

image_ref NewImage(std::string_view name, uint32_t data_type, const std::vector<uint32_t>& sizes)
{
    static constinit function_slot slot{"BasicImage NewImage( dm_string, uint32, uint32... )"};
    switch (sizes.size()) {
        case 1: return call<image_ref>(slot, name, data_type, sizes[0]);
        case 2: return call<image_ref>(slot, name, data_type, sizes[0], sizes[1]);
        case 3: return call<image_ref>(slot, name, data_type, sizes[0], sizes[1], sizes[2]);
        default: throw std::runtime_error{too_many_dimensions};
    }
}

void LockMemory(const script_object_ref& lock)
{
    call_method<void>(lock, "LockMemory", "void LockMemory( ScriptObject self )");
}

function_ref find_UnlockMemory(const script_object_ref& lock)
{
    return find_method(lock, "UnlockMemory", "void UnlockMemory( ScriptObject self )");
}

image_slice ImageData_GetSlice(const script_object_ref& lock, uint32_t slice_index)
{
    static constinit function_slot slot{
        "void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
        "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)"};
    image_slice slice;
    slice.data = call<void*>(slot, lock, slice_index, uint32_t{kMaxDim}, out{slice.num_dim}, out{slice.data_type},
                             out{slice.pack_style}, out{slice.size[0]}, out{slice.stride[0]}, out{slice.size[1]},
                             out{slice.stride[1]}, out{slice.size[2]}, out{slice.stride[2]});
    return slice;
}

script_object_ref NewImageDataSlice(const host_data_slice& slice)
{
    static constinit function_slot slot{"ScriptObject NewImageDataSlice( uint32, uint32, long... )"};
    const auto describe = [&](auto... starts_and_extents) {
        return call<script_object_ref>(slot, slice.data_type, slice.num_dim, starts_and_extents...);
    };
    const auto& start = slice.start;
    const auto& extent = slice.extent;
    switch (slice.num_dim) {
        case 1: return describe(start[0], extent[0]);
        case 2: return describe(start[0], extent[0], start[1], extent[1]);
        case 3: return describe(start[0], extent[0], start[1], extent[1], start[2], extent[2]);
        default: throw std::runtime_error{too_many_dimensions};
    }
}

host_data_slice ExtractImageDataSequenceFromScriptObjectOrFail(const script_object_ref& description)
{
    static constinit function_slot slot{"void ExtractImageDataSequenceFromScriptObjectOrFail( ScriptObject, void * )"};
    host_data_slice slice{};
    call<void>(slot, description, static_cast<void*>(&slice));
    return slice;
}

}  // namespace qorv::binding
