#include "binding/host_functions.h"

#include <stdexcept>

#include "binding/call.h"

namespace qorv::binding {

image_ref ComplexImage(std::string_view name, std::int32_t bytes, std::int32_t width, std::int32_t height)
{
    static function_slot slot{"ComplexImagePtr ComplexImage( string, long, long, long )"};
    return call<image_ref>(slot, name, bytes, width, height);
}

image_ref RealImage(std::string_view name, std::uint32_t bytes, std::uint32_t width, std::uint32_t height)
{
    static function_slot slot{"RealImagePtr RealImage( dm_string, uint32, uint32, uint32 )"};
    return call<image_ref>(slot, name, bytes, width, height);
}

image_ref IntegerImage(std::string_view name, std::int32_t bytes, bool is_signed, std::int32_t width,
                       std::int32_t height)
{
    static function_slot slot{"RealImagePtr IntegerImage( string, long, Boolean, long, long )"};
    return call<image_ref>(slot, name, bytes, is_signed, width, height);
}

image_ref NewImage(std::string_view name, std::uint32_t data_type, const std::vector<std::uint32_t>& sizes)
{
    static function_slot slot{"BasicImage NewImage( dm_string, uint32, uint32... )"};
    switch (sizes.size()) {
        case 1: return call<image_ref>(slot, name, data_type, sizes[0]);
        case 2: return call<image_ref>(slot, name, data_type, sizes[0], sizes[1]);
        case 3: return call<image_ref>(slot, name, data_type, sizes[0], sizes[1], sizes[2]);
        default: throw std::runtime_error{"num_dim <= kMaxDim"};
    }
}

image_ref ImageClone(const image_ref& image)
{
    static function_slot slot{"ImageRef ImageClone( ImageRef )"};
    return call<image_ref>(slot, image);
}

image_ref OpenImage(std::string_view path)
{
    static function_slot slot{"BasicImage OpenImage( dm_string )"};
    return call<image_ref>(slot, path);
}

void ConvertToFloat(const image_ref& image)
{
    static function_slot slot{"void ConvertToFloat( ImageRef )"};
    call<void>(slot, image);
}

std::int16_t GetDataType(const image_ref& image)
{
    static function_slot slot{"short GetDataType( ImageRef )"};
    return call<std::int16_t>(slot, image);
}

void GetSize(const image_ref& image, std::int32_t& width, std::int32_t& height)
{
    static function_slot slot{"void GetSize( ImageRef, long *, long * )"};
    call<void>(slot, image, out{width}, out{height});
}

void ImageDataChanged(const image_ref& image)
{
    static function_slot slot{"void ImageDataChanged( ImageRef )"};
    call<void>(slot, image);
}

std::uint32_t ImageGetDataElementByteSize(const image_ref& image)
{
    static function_slot slot{"uint32 ImageGetDataElementByteSize( ImageRef )"};
    return call<std::uint32_t>(slot, image);
}

std::uint32_t ImageGetDataType(const image_ref& image)
{
    static function_slot slot{"uint32 ImageGetDataType( ImageRef )"};
    return call<std::uint32_t>(slot, image);
}

std::uint32_t ImageGetDimensionSize(const image_ref& image, std::uint32_t dimension)
{
    static function_slot slot{"uint32 ImageGetDimensionSize( ImageRef, uint32 )"};
    return call<std::uint32_t>(slot, image, dimension);
}

std::string ImageGetName(const image_ref& image)
{
    static function_slot slot{"dm_string ImageGetName( ImageRef )"};
    return call<std::string>(slot, image);
}

std::uint32_t ImageGetNumDimensions(const image_ref& image)
{
    static function_slot slot{"uint32 ImageGetNumDimensions( ImageRef )"};
    return call<std::uint32_t>(slot, image);
}

bool ImageIsValid(const image_ref& image)
{
    static function_slot slot{"Boolean ImageIsValid( ImageRef )"};
    return call<bool>(slot, image);
}

bool IsComplexDataType(const image_ref& image, std::int32_t bytes)
{
    static function_slot slot{"Boolean IsComplexDataType( ImageRef, long )"};
    return call<bool>(slot, image, bytes);
}

bool IsRealDataType(const image_ref& image, std::int32_t bytes)
{
    static function_slot slot{"Boolean IsRealDataType( ImageRef, long )"};
    return call<bool>(slot, image, bytes);
}

script_object_ref ImageGetLockedData(const image_ref& image, std::uint32_t mode, const script_object_ref& listener)
{
    static function_slot slot{"ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )"};
    return call<script_object_ref>(slot, image, mode, listener);
}

void LockMemory(const script_object_ref& lock)
{
    call_method<void>(lock, "LockMemory", "void LockMemory( ScriptObject self )");
}

function_ref find_UnlockMemory(const script_object_ref& lock)
{
    return find_method(lock, "UnlockMemory", "void UnlockMemory( ScriptObject self )");
}

std::uint32_t ImageData_CountSlices(const script_object_ref& lock)
{
    static function_slot slot{"uint32 ImageData_CountSlices( ScriptObject img_src )"};
    return call<std::uint32_t>(slot, lock);
}

image_slice ImageData_GetSlice(const script_object_ref& lock, std::uint32_t slice_index)
{
    static function_slot slot{
        "void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
        "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)"};
    image_slice slice;
    slice.data = call<void*>(slot, lock, slice_index, std::uint32_t{kMaxDim}, out{slice.num_dim}, out{slice.data_type},
                             out{slice.pack_style}, out{slice.size[0]}, out{slice.stride[0]}, out{slice.size[1]},
                             out{slice.stride[1]}, out{slice.size[2]}, out{slice.stride[2]});
    return slice;
}

script_object_ref NewImageDataSlice(const host_data_slice& slice)
{
    static function_slot slot{"ScriptObject NewImageDataSlice( uint32, uint32, long... )"};
    const auto& start = slice.start;
    const auto& extent = slice.extent;
    switch (slice.num_dim) {
        case 1: return call<script_object_ref>(slot, slice.data_type, slice.num_dim, start[0], extent[0]);
        case 2:
            return call<script_object_ref>(slot, slice.data_type, slice.num_dim, start[0], extent[0], start[1],
                                           extent[1]);
        case 3:
            return call<script_object_ref>(slot, slice.data_type, slice.num_dim, start[0], extent[0], start[1],
                                           extent[1], start[2], extent[2]);
        default: throw std::runtime_error{"num_dim <= kMaxDim"};
    }
}

host_data_slice ExtractImageDataSequenceFromScriptObjectOrFail(const script_object_ref& description)
{
    static function_slot slot{"void ExtractImageDataSequenceFromScriptObjectOrFail( ScriptObject, void * )"};
    host_data_slice slice{};
    call<void>(slot, description, static_cast<void*>(&slice));
    return slice;
}

tag_group_ref NewTagGroup()
{
    static function_slot slot{"TagGroup NewTagGroup(  )"};
    return call<tag_group_ref>(slot);
}

tag_group_ref NewTagList()
{
    static function_slot slot{"TagGroup NewTagList(  )"};
    return call<tag_group_ref>(slot);
}

std::int32_t TagGroupCountTags(const tag_group_ref& group)
{
    static function_slot slot{"long TagGroupCountTags( TagGroup )"};
    return call<std::int32_t>(slot, group);
}

bool TagGroupGetIndexedTagAsTagGroup(const tag_group_ref& list, std::int32_t index, tag_group_ref& value)
{
    static function_slot slot{"Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )"};
    return call<bool>(slot, list, index, out{value});
}

bool TagGroupGetTagAsFloat(const tag_group_ref& group, std::string_view path, float& value)
{
    static function_slot slot{"Boolean TagGroupGetTagAsFloat( TagGroup, string, float * )"};
    return call<bool>(slot, group, path, out{value});
}

bool TagGroupGetTagAsLong(const tag_group_ref& group, std::string_view path, std::int32_t& value)
{
    static function_slot slot{"Boolean TagGroupGetTagAsLong( TagGroup, string, long * )"};
    return call<bool>(slot, group, path, out{value});
}

bool TagGroupGetTagAsString(const tag_group_ref& group, std::string_view path, std::string& value)
{
    static function_slot slot{"Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )"};
    return call<bool>(slot, group, path, out{value});
}

void TagGroupInsertTagAsTagGroup(const tag_group_ref& list, std::int32_t index, const tag_group_ref& value)
{
    static function_slot slot{"void TagGroupInsertTagAsTagGroup( TagGroup, long, TagGroup )"};
    call<void>(slot, list, index, value);
}

void TagGroupSetTagAsFloat(const tag_group_ref& group, std::string_view path, float value)
{
    static function_slot slot{"void TagGroupSetTagAsFloat( TagGroup, string, float )"};
    call<void>(slot, group, path, value);
}

void TagGroupSetTagAsLong(const tag_group_ref& group, std::string_view path, std::int32_t value)
{
    static function_slot slot{"void TagGroupSetTagAsLong( TagGroup, string, long )"};
    call<void>(slot, group, path, value);
}

void TagGroupSetTagAsString(const tag_group_ref& group, std::string_view path, std::string_view value)
{
    static function_slot slot{"void TagGroupSetTagAsString( TagGroup, string, dm_string )"};
    call<void>(slot, group, path, value);
}

bool DoesFileExist(std::string_view path)
{
    static function_slot slot{"bool DoesFileExist( dm_string )"};
    return call<bool>(slot, path);
}

void OkDialog(std::string_view text)
{
    static function_slot slot{"void OkDialog( string )"};
    call<void>(slot, text);
}

void ShowAlert(std::string_view text, std::int32_t kind)
{
    static function_slot slot{"void ShowAlert( dm_string, long )"};
    call<void>(slot, text, kind);
}

std::uint64_t RegisterCustomTool(std::uint64_t tool, std::string_view name, std::uint64_t context)
{
    static function_slot slot{"uint64 RegisterCustomTool( uint64, string, uint64 )"};
    return call<std::uint64_t>(slot, tool, name, context);
}

void UnregisterCustomTool(std::uint64_t handle)
{
    static function_slot slot{"void UnregisterCustomTool( uint64 )"};
    call<void>(slot, handle);
}

throwable_ref NewThrowableFromString(std::string_view text)
{
    static function_slot slot{"Throwable NewThrowableFromString( dm_string )"};
    return call<throwable_ref>(slot, text);
}

function_ref NewAbstractMethod(std::string_view name, std::string_view prototype)
{
    static function_slot slot{"Function NewAbstractMethod( dm_string, dm_string )"};
    return call<function_ref>(slot, name, prototype);
}

function_ref ScriptClassAddMethod(const script_class_ref& script_class, const function_ref& method)
{
    static function_slot slot{"Function ScriptClassAddMethod( ScriptClass, Function )"};
    return call<function_ref>(slot, script_class, method);
}

}  // namespace qorv::binding
