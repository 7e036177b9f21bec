#include "functions/rank/rank_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/rank/extreme_filter.h"
#include "functions/rank/median.h"
#include "functions/rank/median_filter.h"
#include "functions/rank/median_z.h"
#include "functions/rank/nth_element.h"
#include "image/overlap.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

constexpr char source_should_be_real[] = "imgSrc should be Real.";

/// Binary images hold one byte per pixel and are filtered as unsigned bytes.
std::uint32_t filtered_type(std::uint32_t code)
{
    return code == static_cast<std::uint32_t>(dm::data_type::binary) ? dm::code_of<std::uint8_t> : code;
}

image_ref extreme_filtered(const image_ref& source, std::int32_t radius, image_ref destination, extreme which)
{
    dm::require_image(source);
    const std::uint32_t code = binding::ImageGetDataType(source);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require_same_size(source, destination);
    const std::uint32_t type = filtered_type(code);
    dm::require(binding::ImageGetDataType(destination) == code && has_type(dm::eight_reals{}, type),
                dm::errors::invalid_image_type);
    dm::with_locks(reading{source}, writing{destination}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::eight_reals{}, type, [&]<class T>() {
            const dm::image<const T> pixels{static_cast<const T*>(from.data()), from.sizes(), from.strides()};
            const dm::image<T> result{static_cast<T*>(to.data()), to.sizes(), to.strides()};
            extreme_filter<T>(pixels, which, radius, result);
        });
    });
    return destination;
}

bool is_complex(const image_ref& image)
{
    return binding::IsComplexDataType(image, 8) || binding::IsComplexDataType(image, 16);
}

/// The source itself if it is float or double, otherwise a clone that the host has converted to float.
/// Throws  `complex_text` for a complex source
image_ref as_float_or_double(const image_ref& source, const char* complex_text)
{
    dm::require_image(source);
    dm::require(!is_complex(source), complex_text);
    if (has_type(dm::float_or_double{}, binding::ImageGetDataType(source))) return source;
    image_ref converted = binding::ImageClone(source);
    binding::ConvertToFloat(converted);
    return converted;
}

image_ref median_filtered(const image_ref& source, std::int32_t radius, image_ref destination, padding outside)
{
    const image_ref values = as_float_or_double(source, dm::errors::all_real);
    const std::uint32_t type = binding::ImageGetDataType(values);
    destination = dm::or_clone_of(std::move(destination), values);
    dm::require_same_size(values, destination);
    dm::require(binding::ImageGetDataType(destination) == type, dm::errors::invalid_image_type);
    dm::with_locks(reading{values}, writing{destination}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, type,
              [&]<class T>() { median_filter<T>(from.view<T>(), radius, outside, to.view<T>()); });
    });
    return destination;
}

/// choose(view) of all values of the source.
template <class Choose>
double chosen(const image_ref& source, Choose choose)
{
    const image_ref values = as_float_or_double(source, dm::errors::all_real);
    return dm::with_locks(reading{values}, [&](const read_lock& from) {
        double found = 0;
        visit(dm::float_or_double{}, from.host_code(), [&]<class T>() { found = choose(from.view<T>()); });
        return found;
    });
}

/// Throws  errors::out_of_place when the result overlaps the stack without being one of its planes.
template <class T>
void require_plane_or_apart(const dm::image<const T>& stack, const dm::image<T>& result)
{
    for (std::ptrdiff_t z = 0; z < stack.depth(); ++z)
        if (dm::same_pixels(stack.plane(z), result)) return;
    dm::require(!dm::overlap(stack, result), dm::errors::out_of_place);
}

image_ref MaximumFilterDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MaximumFilterDM"};
    return extreme_filtered(imgSrc, nRad, std::move(imgDst), extreme::maximum);
}

image_ref MinimumFilterDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MinimumFilterDM"};
    return extreme_filtered(imgSrc, nRad, std::move(imgDst), extreme::minimum);
}

image_ref MedianFilterDM2(image_ref imgSrc, std::int32_t nRad, image_ref imgDst, std::int32_t nUseZeroPadding)
{
    const dm::timing_scope timing{"MedianFilterDM2"};
    return median_filtered(imgSrc, nRad, std::move(imgDst), nUseZeroPadding != 0 ? padding::zeros : padding::none);
}

image_ref MedianFilterDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    return MedianFilterDM2(std::move(imgSrc), nRad, std::move(imgDst), 0);
}

double NthElementDM(image_ref imgSrc, std::int32_t n)
{
    const dm::timing_scope timing{"NthElementDM"};
    return chosen(imgSrc, [&]<class T>(const dm::image<const T>& values) { return nth_element<T>(values, n); });
}

double MedianDM(image_ref imgSrc)
{
    const dm::timing_scope timing{"MedianDM"};
    return chosen(imgSrc, []<class T>(const dm::image<const T>& values) { return median<T>(values); });
}

image_ref MedianZDM(image_ref imgSrc, image_ref imgDst)
{
    const dm::timing_scope timing{"MedianZDM"};
    const image_ref stack = as_float_or_double(imgSrc, source_should_be_real);
    const std::uint32_t type = binding::ImageGetDataType(stack);
    const std::uint32_t width = dm::size_along(stack, 0), height = dm::size_along(stack, 1);
    if (!imgDst) imgDst = binding::NewImage("", type, {width, height});  // a clone would have all planes
    dm::require(
        dm::size_along(imgDst, 0) == width && dm::size_along(imgDst, 1) == height && dm::size_along(imgDst, 2) == 1,
        dm::errors::invalid_image_size);
    dm::require(binding::ImageGetDataType(imgDst) == type, dm::errors::invalid_image_type);
    dm::with_locks(reading{stack}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, type, [&]<class T>() {
            require_plane_or_apart<T>(from.view<T>(), to.view<T>());
            median_z<T>(from.view<T>(), to.view<T>());
        });
    });
    return imgDst;
}

constexpr dm::script_function rows[] = {
    {"ImageRef ", "MaximumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MaximumFilterDM>},
    {"ImageRef ", "MinimumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MinimumFilterDM>},
    {"ImageRef ", "MedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst , long nUseZeroPadding )",
     binding::add_function<MedianFilterDM2>},
    {"ImageRef ", "MedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MedianFilterDM>},
    {"double ", "NthElement(ImageRef imgSrc, long n)", binding::add_function<NthElementDM>},
    {"double ", "Median(ImageRef imgSrc)", binding::add_function<MedianDM>},
    {"ImageRef ", "MedianZ(ImageRef imgSrc, ImageRef imgDst)", binding::add_function<MedianZDM>},
};

}  // namespace

const dm::script_functions rank_functions{rows};

}  // namespace qorv::functions
