#include "functions/reciprocal/window_entry.h"

#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/reciprocal/apodisation.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

using complex = std::complex<double>;

/// The complex type of the same precision.
template <class T>
struct complex_of
{
    using type = std::complex<T>;
};
template <class Real>
struct complex_of<std::complex<Real>>
{
    using type = std::complex<Real>;
};

image_ref real_windowed(const image_ref& source, window shape, const window_offsets<double>& offsets,
                        image_ref destination)
{
    dm::require_image(source);
    const std::uint32_t type = binding::ImageGetDataType(source);
    dm::require(has_type(dm::float_or_double{}, type), dm::errors::should_be_real4_or_real8);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require(binding::ImageGetDataType(destination) == type, dm::errors::invalid_image_type);
    dm::read_lock from{source};
    dm::write_lock to{destination};
    visit(dm::float_or_double{}, type,
          [&]<class T>() { apply_window<T, T, double>(from.view<T>(), shape, offsets, to.view<T>()); });
    to.release();
    from.release();
    return destination;
}

/// A clone of a complex source, a new complex image of its size and precision for a real one.
image_ref new_complex_like(const image_ref& source, std::uint32_t type, std::uint32_t complex_type)
{
    if (type == complex_type) return binding::ImageClone(source);
    std::vector<std::uint32_t> sizes;
    for (std::uint32_t axis = 0; axis < binding::ImageGetNumDimensions(source); ++axis)
        sizes.push_back(binding::ImageGetDimensionSize(source, axis));
    return binding::NewImage(binding::ImageGetName(source), complex_type, sizes);
}

image_ref complex_windowed(const image_ref& source, window shape, const window_offsets<complex>& offsets,
                           image_ref destination)
{
    dm::require_image(source);
    const std::uint32_t type = binding::ImageGetDataType(source);
    std::uint32_t complex_type = 0;
    const bool known = visit(dm::real_or_complex{}, type, [&]<class T>() {
        complex_type = static_cast<std::uint32_t>(dm::data_type_of<typename complex_of<T>::type>);
    });
    dm::require(known, dm::errors::all_real_or_complex);
    if (!destination) destination = new_complex_like(source, type, complex_type);
    dm::require(binding::ImageGetDataType(destination) == complex_type, dm::errors::invalid_image_type);
    dm::read_lock from{source};
    dm::write_lock to{destination};
    visit(dm::real_or_complex{}, type, [&]<class T>() {
        using result = typename complex_of<T>::type;
        apply_window<T, result, complex>(from.view<T>(), shape, offsets, to.view<result>());
    });
    to.release();
    from.release();
    return destination;
}

}  // namespace

image_ref FTWindowDM(image_ref imgSrc, std::int32_t eMode, image_ref imgDst)
{
    const dm::timing_scope timing{"FTWindowDM"};
    dm::require_image(imgSrc);
    const std::uint32_t type = binding::ImageGetDataType(imgSrc);
    dm::require(has_type(dm::real_or_complex{}, type), dm::errors::all_real_or_complex);
    imgDst = dm::or_clone_of(std::move(imgDst), imgSrc);
    dm::require(binding::ImageGetDataType(imgDst) == type, dm::errors::invalid_image_type);
    const window shape = ft_window_of(eMode);
    dm::read_lock from{imgSrc};
    dm::write_lock to{imgDst};
    visit(dm::real_or_complex{}, type,
          [&]<class T>() { apply_window<T, T, double>(from.view<T>(), shape, {}, to.view<T>()); });
    to.release();
    from.release();
    return imgDst;
}

image_ref HanningWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst)
{
    const dm::timing_scope timing{"HanningWindowDM"};
    return real_windowed(imgSrc, window::hann, {fA, fB, fC}, std::move(imgDst));
}

image_ref HanningWindowComplexDM(image_ref imgSrc, complex fA, complex fB, complex fC, image_ref imgDst)
{
    const dm::timing_scope timing{"HanningWindowComplexDM"};
    return complex_windowed(imgSrc, window::hann, {fA, fB, fC}, std::move(imgDst));
}

image_ref SineWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst)
{
    const dm::timing_scope timing{"SineWindowDM"};
    return real_windowed(imgSrc, window::sine, {fA, fB, fC}, std::move(imgDst));
}

image_ref SineWindowComplexDM(image_ref imgSrc, complex fA, complex fB, complex fC, image_ref imgDst)
{
    const dm::timing_scope timing{"SineWindowComplexDM"};
    return complex_windowed(imgSrc, window::sine, {fA, fB, fC}, std::move(imgDst));
}

image_ref VorbisWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst)
{
    const dm::timing_scope timing{"VorbisWindowDM"};
    return real_windowed(imgSrc, window::vorbis, {fA, fB, fC}, std::move(imgDst));
}

image_ref VorbisWindowComplexDM(image_ref imgSrc, complex fA, complex fB, complex fC, image_ref imgDst)
{
    const dm::timing_scope timing{"VorbisWindowComplexDM"};
    return complex_windowed(imgSrc, window::vorbis, {fA, fB, fC}, std::move(imgDst));
}

}  // namespace qorv::functions
