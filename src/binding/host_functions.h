#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "binding/call.h"
#include "binding/object_ref.h"

/// The host's own script functions, under the host's names. Each is looked up by its exact prototype text at its first
/// call. The list is the complete interface to the host; some of its functions have no caller in the library.
///
/// Throws  Gatan::gatan_exception when the host has no such function; host_error with the host's text when a call fails
namespace qorv::binding {

/// A host function, called like a C++ function of the type `Result(Parameters...)`. A parameter of the form `T&` is an
/// output: it keeps its value when the call fails.
template <class Signature>
class host_function;

template <class Result, class... Parameters>
class host_function<Result(Parameters...)>
{
    template <class T>
    using passed = std::conditional_t<std::is_reference_v<T>, T, const T&>;

  public:
    explicit constexpr host_function(const char* prototype) noexcept : slot_{prototype} {}
    Result operator()(passed<Parameters>... arguments) { return call<Result>(slot_, marked(arguments)...); }
    /// Whether the host has this function.
    bool exists() { return static_cast<bool>(slot_.find()); }
    /// Looks the function up, so that a later call cannot fail because there is none.
    void require() { slot_.require(); }

  private:
    template <class T>
    static const T& marked(const T& input)
    {
        return input;
    }
    template <class T>
    static out<T> marked(T& output)
    {
        return {output};
    }

    function_slot slot_;
};

using std::int16_t, std::int32_t, std::uint32_t, std::uint64_t;

// Images.
inline constinit host_function<image_ref(std::string_view name, int32_t bytes, int32_t width, int32_t height)>
    ComplexImage{"ComplexImagePtr ComplexImage( string, long, long, long )"};
inline constinit host_function<image_ref(std::string_view name, uint32_t bytes, uint32_t width, uint32_t height)>
    RealImage{"RealImagePtr RealImage( dm_string, uint32, uint32, uint32 )"};
inline constinit host_function<image_ref(std::string_view name, int32_t bytes, bool is_signed, int32_t width,
                                         int32_t height)>
    IntegerImage{"RealImagePtr IntegerImage( string, long, Boolean, long, long )"};
inline constinit host_function<image_ref(image_ref)> ImageClone{"ImageRef ImageClone( ImageRef )"};
inline constinit host_function<image_ref(std::string_view path)> OpenImage{"BasicImage OpenImage( dm_string )"};
inline constinit host_function<void(image_ref)> ConvertToFloat{"void ConvertToFloat( ImageRef )"};
inline constinit host_function<int16_t(image_ref)> GetDataType{"short GetDataType( ImageRef )"};
inline constinit host_function<void(image_ref, int32_t& width, int32_t& height)> GetSize{
    "void GetSize( ImageRef, long *, long * )"};
inline constinit host_function<void(image_ref)> ImageDataChanged{"void ImageDataChanged( ImageRef )"};
inline constinit host_function<uint32_t(image_ref)> ImageGetDataElementByteSize{
    "uint32 ImageGetDataElementByteSize( ImageRef )"};
inline constinit host_function<uint32_t(image_ref)> ImageGetDataType{"uint32 ImageGetDataType( ImageRef )"};
inline constinit host_function<uint32_t(image_ref, uint32_t dimension)> ImageGetDimensionSize{
    "uint32 ImageGetDimensionSize( ImageRef, uint32 )"};
inline constinit host_function<std::string(image_ref)> ImageGetName{"dm_string ImageGetName( ImageRef )"};
inline constinit host_function<uint32_t(image_ref)> ImageGetNumDimensions{"uint32 ImageGetNumDimensions( ImageRef )"};
inline constinit host_function<bool(image_ref)> ImageIsValid{"Boolean ImageIsValid( ImageRef )"};
inline constinit host_function<bool(image_ref, int32_t bytes)> IsComplexDataType{
    "Boolean IsComplexDataType( ImageRef, long )"};
inline constinit host_function<bool(image_ref, int32_t bytes)> IsRealDataType{
    "Boolean IsRealDataType( ImageRef, long )"};

/// The host's maximum number of dimensions.
inline constexpr std::size_t kMaxDim = 3;
/// Creates an image of 1 to 3 dimensions (`sizes`, x first) with elements of the host's type code `data_type`.
/// Throws  std::runtime_error "num_dim <= kMaxDim" for more dimensions
image_ref NewImage(std::string_view name, uint32_t data_type, const std::vector<uint32_t>& sizes);

// Image data. `mode` is HOST_LOCK_READ or HOST_LOCK_WRITE; `listener` may be null.
inline constinit host_function<script_object_ref(image_ref, uint32_t mode, script_object_ref listener)>
    ImageGetLockedData{"ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )"};
inline constinit host_function<uint32_t(script_object_ref lock)> ImageData_CountSlices{
    "uint32 ImageData_CountSlices( ScriptObject img_src )"};
/// Pins the pixels of a lock object.
void LockMemory(const script_object_ref& lock);
/// The method that unpins them. Find it before the memory is locked, so that unlocking cannot fail for want of it.
function_ref find_UnlockMemory(const script_object_ref& lock);

/// A slice's memory.
struct image_slice
{
    void* data = nullptr;
    uint32_t num_dim = 0;
    uint32_t data_type = 0;
    uint32_t pack_style = 0;
    int32_t size[kMaxDim] = {1, 1, 1};    ///< x first; 1 beyond num_dim
    int32_t stride[kMaxDim] = {0, 0, 0};  ///< in elements; 0 beyond num_dim
};
image_slice ImageData_GetSlice(const script_object_ref& lock, uint32_t slice_index);

/// Describes part of an image's data.
/// Throws  std::runtime_error "num_dim <= kMaxDim" for fewer than 1 or more than 3 dimensions
script_object_ref NewImageDataSlice(const host_data_slice& slice);
/// Unpacks such a description.
host_data_slice ExtractImageDataSequenceFromScriptObjectOrFail(const script_object_ref& description);

// Tags. The readers return false, and leave `value` unchanged, when there is no such tag.
inline constinit host_function<tag_group_ref()> NewTagGroup{"TagGroup NewTagGroup(  )"};
inline constinit host_function<tag_group_ref()> NewTagList{"TagGroup NewTagList(  )"};
inline constinit host_function<int32_t(tag_group_ref)> TagGroupCountTags{"long TagGroupCountTags( TagGroup )"};
inline constinit host_function<bool(tag_group_ref list, int32_t index, tag_group_ref& value)>
    TagGroupGetIndexedTagAsTagGroup{"Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )"};
inline constinit host_function<bool(tag_group_ref, std::string_view path, float& value)> TagGroupGetTagAsFloat{
    "Boolean TagGroupGetTagAsFloat( TagGroup, string, float * )"};
inline constinit host_function<bool(tag_group_ref, std::string_view path, int32_t& value)> TagGroupGetTagAsLong{
    "Boolean TagGroupGetTagAsLong( TagGroup, string, long * )"};
inline constinit host_function<bool(tag_group_ref, std::string_view path, std::string& value)> TagGroupGetTagAsString{
    "Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )"};
inline constinit host_function<void(tag_group_ref list, int32_t index, tag_group_ref value)>
    TagGroupInsertTagAsTagGroup{"void TagGroupInsertTagAsTagGroup( TagGroup, long, TagGroup )"};
inline constinit host_function<void(tag_group_ref, std::string_view path, float value)> TagGroupSetTagAsFloat{
    "void TagGroupSetTagAsFloat( TagGroup, string, float )"};
inline constinit host_function<void(tag_group_ref, std::string_view path, int32_t value)> TagGroupSetTagAsLong{
    "void TagGroupSetTagAsLong( TagGroup, string, long )"};
inline constinit host_function<void(tag_group_ref, std::string_view path, std::string_view value)>
    TagGroupSetTagAsString{"void TagGroupSetTagAsString( TagGroup, string, dm_string )"};

// User, files and tools. output_window.h has the output window.
inline constinit host_function<bool(std::string_view path)> DoesFileExist{"bool DoesFileExist( dm_string )"};
inline constinit host_function<void(std::string_view text)> OkDialog{"void OkDialog( string )"};
inline constinit host_function<void(std::string_view text, int32_t kind)> ShowAlert{
    "void ShowAlert( dm_string, long )"};
inline constinit host_function<uint64_t(uint64_t tool, std::string_view name, uint64_t context)> RegisterCustomTool{
    "uint64 RegisterCustomTool( uint64, string, uint64 )"};
inline constinit host_function<void(uint64_t handle)> UnregisterCustomTool{"void UnregisterCustomTool( uint64 )"};

// Throwables and script classes.
inline constinit host_function<throwable_ref(std::string_view text)> NewThrowableFromString{
    "Throwable NewThrowableFromString( dm_string )"};
inline constinit host_function<function_ref(std::string_view name, std::string_view prototype)> NewAbstractMethod{
    "Function NewAbstractMethod( dm_string, dm_string )"};
inline constinit host_function<function_ref(script_class_ref, function_ref method)> ScriptClassAddMethod{
    "Function ScriptClassAddMethod( ScriptClass, Function )"};

}  // namespace qorv::binding
