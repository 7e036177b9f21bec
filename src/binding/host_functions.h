#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "binding/object_ref.h"

/// The host's own script functions that the library calls, under the host's names. Each looks its prototype up once.
/// All of them throw Gatan::gatan_exception when the host has no such function, and host_error with the host's text
/// when the call fails.
namespace qorv::binding {

// Images: making, asking, telling.
image_ref ComplexImage(std::string_view name, std::int32_t bytes, std::int32_t width, std::int32_t height);
image_ref RealImage(std::string_view name, std::uint32_t bytes, std::uint32_t width, std::uint32_t height);
image_ref IntegerImage(std::string_view name, std::int32_t bytes, bool is_signed, std::int32_t width,
                       std::int32_t height);
/// An image of 1 to 3 dimensions (`sizes`, x first) of the host's element code `data_type`.
/// Throws  std::runtime_error "num_dim <= kMaxDim" for more dimensions
image_ref NewImage(std::string_view name, std::uint32_t data_type, const std::vector<std::uint32_t>& sizes);
inline constexpr std::size_t kMaxDim = 3;
image_ref ImageClone(const image_ref& image);
image_ref OpenImage(std::string_view path);
void ConvertToFloat(const image_ref& image);
std::int16_t GetDataType(const image_ref& image);
void GetSize(const image_ref& image, std::int32_t& width, std::int32_t& height);
void ImageDataChanged(const image_ref& image);
std::uint32_t ImageGetDataElementByteSize(const image_ref& image);
std::uint32_t ImageGetDataType(const image_ref& image);
std::uint32_t ImageGetDimensionSize(const image_ref& image, std::uint32_t dimension);
std::string ImageGetName(const image_ref& image);
std::uint32_t ImageGetNumDimensions(const image_ref& image);
bool ImageIsValid(const image_ref& image);
bool IsComplexDataType(const image_ref& image, std::int32_t bytes);
bool IsRealDataType(const image_ref& image, std::int32_t bytes);

// Image data.
script_object_ref ImageGetLockedData(const image_ref& image, std::uint32_t mode, const script_object_ref& listener);
void LockMemory(const script_object_ref& lock);
/// The method that gives the memory back. Found before the memory is locked, so that nothing can hinder its call later.
function_ref find_UnlockMemory(const script_object_ref& lock);
std::uint32_t ImageData_CountSlices(const script_object_ref& lock);
/// A slice's memory: data pointer, dimensions, element code, packing, and a size and a stride (in elements) for each
/// dimension; 1 and 0 beyond the image's own dimensions.
struct image_slice
{
    void* data = nullptr;
    std::uint32_t num_dim = 0;
    std::uint32_t data_type = 0;
    std::uint32_t pack_style = 0;
    std::int32_t size[kMaxDim] = {1, 1, 1};
    std::int32_t stride[kMaxDim] = {0, 0, 0};
};
image_slice ImageData_GetSlice(const script_object_ref& lock, std::uint32_t slice_index);
/// Describes part of an image: a start and an extent for each of the slice's dimensions.
script_object_ref NewImageDataSlice(const host_data_slice& slice);
host_data_slice ExtractImageDataSequenceFromScriptObjectOrFail(const script_object_ref& description);

// Tags.
tag_group_ref NewTagGroup();
tag_group_ref NewTagList();
std::int32_t TagGroupCountTags(const tag_group_ref& group);
/// The readers leave `value` alone and return false when there is no such tag.
bool TagGroupGetIndexedTagAsTagGroup(const tag_group_ref& list, std::int32_t index, tag_group_ref& value);
bool TagGroupGetTagAsFloat(const tag_group_ref& group, std::string_view path, float& value);
bool TagGroupGetTagAsLong(const tag_group_ref& group, std::string_view path, std::int32_t& value);
bool TagGroupGetTagAsString(const tag_group_ref& group, std::string_view path, std::string& value);
void TagGroupInsertTagAsTagGroup(const tag_group_ref& list, std::int32_t index, const tag_group_ref& value);
void TagGroupSetTagAsFloat(const tag_group_ref& group, std::string_view path, float value);
void TagGroupSetTagAsLong(const tag_group_ref& group, std::string_view path, std::int32_t value);
void TagGroupSetTagAsString(const tag_group_ref& group, std::string_view path, std::string_view value);

// The user, files, tools.
bool DoesFileExist(std::string_view path);
void OkDialog(std::string_view text);
void ShowAlert(std::string_view text, std::int32_t kind);
std::uint64_t RegisterCustomTool(std::uint64_t tool, std::string_view name, std::uint64_t context);
void UnregisterCustomTool(std::uint64_t handle);

/// Writes to the host's output window. Where the host has none, "No DM output window\n" goes to the debugger output
/// (standard error outside Windows) instead.
void WriteOutputWindow(std::string_view module_name, std::uint32_t output_type, std::string_view text);

// Throwables and script classes.
throwable_ref NewThrowableFromString(std::string_view text);
function_ref NewAbstractMethod(std::string_view name, std::string_view prototype);
function_ref ScriptClassAddMethod(const script_class_ref& script_class, const function_ref& method);

}  // namespace qorv::binding
