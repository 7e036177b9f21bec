#include "functions/reciprocal/window_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/reciprocal/apodisation.h"
#include "numeric/complex.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

using complex = std::complex<double>;

/// The names of the two forms of a window function in the timing records.
struct window_counters
{
    const char* real;
    const char* complex;
};
template <window shape>
constexpr window_counters counters{};
template <>
constexpr window_counters counters<window::hann>{"HanningWindowDM", "HanningWindowComplexDM"};
template <>
constexpr window_counters counters<window::sine>{"SineWindowDM", "SineWindowComplexDM"};
template <>
constexpr window_counters counters<window::vorbis>{"VorbisWindowDM", "VorbisWindowComplexDM"};

/// HanningWindow, SineWindow and VorbisWindow of real images.
template <window shape>
image_ref RealWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst)
{
    const dm::timing_scope timing{counters<shape>.real};
    const std::uint32_t type = dm::required_type(dm::float_or_double{}, imgSrc, dm::errors::should_be_real4_or_real8);
    imgDst = dm::or_clone_of(std::move(imgDst), imgSrc);
    dm::require(binding::ImageGetDataType(imgDst) == type, dm::errors::invalid_image_type);
    const window_offsets<double> offsets{fA, fB, fC};
    dm::with_locks(reading{imgSrc}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, type,
              [&]<class T>() { apply_window<T, T, double>(from.view<T>(), shape, offsets, to.view<T>()); });
    });
    return imgDst;
}

/// A clone of a complex source; for a real source, a new complex image of its sizes, precision and name.
image_ref new_complex_like(const image_ref& source, std::uint32_t type, std::uint32_t complex_type)
{
    if (type == complex_type) return binding::ImageClone(source);
    return dm::new_image_like(binding::ImageGetName(source), complex_type, source);
}

/// The same functions with complex parameters and a complex result.
template <window shape>
image_ref ComplexWindowDM(image_ref imgSrc, complex fA, complex fB, complex fC, image_ref imgDst)
{
    const dm::timing_scope timing{counters<shape>.complex};
    const std::uint32_t type = dm::required_type(dm::real_or_complex{}, imgSrc, dm::errors::all_real_or_complex);
    std::uint32_t complex_type = 0;
    visit(dm::real_or_complex{}, type, [&]<class T>() { complex_type = dm::code_of<numeric::complex_of<T>>; });
    if (!imgDst) imgDst = new_complex_like(imgSrc, type, complex_type);
    dm::require(binding::ImageGetDataType(imgDst) == complex_type, dm::errors::invalid_image_type);
    const window_offsets<complex> offsets{fA, fB, fC};
    dm::with_locks(reading{imgSrc}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::real_or_complex{}, type, [&]<class T>() {
            using result = numeric::complex_of<T>;
            apply_window<T, result, complex>(from.view<T>(), shape, offsets, to.view<result>());
        });
    });
    return imgDst;
}

image_ref FTWindowDM(image_ref imgSrc, std::int32_t eMode, image_ref imgDst)
{
    const dm::timing_scope timing{"FTWindowDM"};
    const std::uint32_t type = dm::required_type(dm::real_or_complex{}, imgSrc, dm::errors::all_real_or_complex);
    imgDst = dm::or_clone_of(std::move(imgDst), imgSrc);
    dm::require(binding::ImageGetDataType(imgDst) == type, dm::errors::invalid_image_type);
    const window shape = ft_window_of(eMode);
    dm::with_locks(reading{imgSrc}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::real_or_complex{}, type,
              [&]<class T>() { apply_window<T, T, double>(from.view<T>(), shape, {}, to.view<T>()); });
    });
    return imgDst;
}

constexpr dm::script_function rows[] = {
    {"ImageRef ", "FTWindow(ImageRef imgSrc, long eMode,ImageRef imgDst)", binding::add_function<FTWindowDM>},
    {"ImageRef ", "HanningWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     binding::add_function<RealWindowDM<window::hann>>},
    {"ComplexImagePtr ", "HanningWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     binding::add_function<ComplexWindowDM<window::hann>>},
    {"ImageRef ", "SineWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     binding::add_function<RealWindowDM<window::sine>>},
    {"ComplexImagePtr ", "SineWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     binding::add_function<ComplexWindowDM<window::sine>>},
    {"ImageRef ", "VorbisWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     binding::add_function<RealWindowDM<window::vorbis>>},
    {"ComplexImagePtr ", "VorbisWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     binding::add_function<ComplexWindowDM<window::vorbis>>},
};

}  // namespace

const dm::script_functions window_functions{rows};

}  // namespace qorv::functions
