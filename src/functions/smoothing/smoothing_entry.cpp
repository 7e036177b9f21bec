#include "functions/smoothing/smoothing_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/smoothing/gaussian.h"
#include "functions/smoothing/moving_average.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using binding::output;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

/// The body of the box filters. `filter(from, to)` is called with the typed views.
template <class Filter>
image_ref box_filtered(const image_ref& source, image_ref destination, Filter filter)
{
    dm::require_image(source);
    const std::uint32_t type = binding::ImageGetDataType(source);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require_same_size(source, destination);
    dm::require(has_type(dm::real_or_complex{}, type), dm::errors::invalid_data_type);
    dm::require(binding::ImageGetDataType(destination) == type, dm::errors::invalid_image_type);
    dm::with_locks(reading{source}, writing{destination}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::real_or_complex{}, type, [&]<class T>() { filter(from.view<T>(), to.view<T>()); });
    });
    return destination;
}

/// A new image of one plane with the width, height and element type of the source, which is real or complex.
image_ref new_plane(std::string_view name, const image_ref& source, std::uint32_t type)
{
    const std::uint32_t width = dm::size_along(source, 0), height = dm::size_along(source, 1);
    const std::uint32_t bytes = binding::ImageGetDataElementByteSize(source);
    if (has_type(dm::float_or_double{}, type)) return binding::RealImage(name, bytes, width, height);
    return binding::ComplexImage(name, static_cast<std::int32_t>(bytes), static_cast<std::int32_t>(width),
                                 static_cast<std::int32_t>(height));
}

/// Whether an output of MovingAverage2 can be filled: an image of the source's width, height and element type.
bool fits(const image_ref& image, const image_ref& source)
{
    return image && dm::size_along(image, 0) == dm::size_along(source, 0) &&
           dm::size_along(image, 1) == dm::size_along(source, 1) &&
           binding::ImageGetDataType(image) == binding::ImageGetDataType(source);
}

image_ref MovingAverageDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MovingAverageDM"};
    return box_filtered(imgSrc, std::move(imgDst),
                        [&](const auto& from, const auto& to) { moving_average(from, to, nRad); });
}

void MovingAverageDM2(image_ref imgSrc, std::int32_t nRad, output<image_ref> imgDst1, output<image_ref> imgDst2)
{
    const dm::timing_scope timing{"MovingAverageDM2"};
    const std::uint32_t type = dm::required_type(dm::real_or_complex{}, imgSrc, dm::errors::invalid_data_type);
    image_ref mean = imgDst1.get(), squares = imgDst2.get();
    if (!fits(mean, imgSrc) || !fits(squares, imgSrc)) {
        mean = new_plane("Mean", imgSrc, type);
        squares = new_plane("Mean of squares", imgSrc, type);
    }
    const auto filter = [&](const read_lock& from, const write_lock& to_mean, const write_lock& to_squares) {
        visit(dm::real_or_complex{}, type,
              [&]<class T>() { moving_average2(from.view<T>(), to_mean.view<T>(), to_squares.view<T>(), nRad); });
    };
    dm::with_locks(reading{imgSrc}, writing{mean}, writing{squares}, filter);
    imgDst1.set(std::move(mean));
    imgDst2.set(std::move(squares));
}

image_ref MovingAverageXDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MovingAverageXDM"};
    return box_filtered(imgSrc, std::move(imgDst),
                        [&](const auto& from, const auto& to) { moving_average_x(from, to, nRad); });
}

image_ref MovingAverageYDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MovingAverageYDM"};
    return box_filtered(imgSrc, std::move(imgDst),
                        [&](const auto& from, const auto& to) { moving_average_y(from, to, nRad); });
}

image_ref MovingAverageZDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MovingAverageZDM"};
    return box_filtered(imgSrc, std::move(imgDst),
                        [&](const auto& from, const auto& to) { moving_average_z(from, to, nRad); });
}

image_ref GaussianBlurDM(image_ref imgSrc, double fRad, std::int32_t nOrder, image_ref imgDst)
{
    const dm::timing_scope timing{"GaussianBlurDM"};
    dm::require_image(imgSrc);
    const std::uint32_t type = binding::ImageGetDataType(imgSrc);
    imgDst = dm::or_clone_of(std::move(imgDst), imgSrc);
    dm::require_same_size(imgSrc, imgDst);
    dm::require(has_type(dm::float_or_double{}, type) && binding::ImageGetDataType(imgDst) == type,
                dm::errors::all_real);
    dm::with_locks(reading{imgSrc}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, type,
              [&]<class T>() { gaussian_blur(from.view<T>(), to.view<T>(), fRad, nOrder); });
    });
    return imgDst;
}

constexpr dm::script_function rows[] = {
    {"ImageRef ", "MovingAverage(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MovingAverageDM>},
    {"void ", "MovingAverage2(ImageRef imgSrc, long nRad, ImageRef* imgDst1, ImageRef* imgDst2)",
     binding::add_function<MovingAverageDM2>},
    {"ImageRef ", "MovingAverageX(ImageRef imgSrc, long nRad, ImageRef imgDst)",
     binding::add_function<MovingAverageXDM>},
    {"ImageRef ", "MovingAverageY(ImageRef imgSrc, long nRad, ImageRef imgDst)",
     binding::add_function<MovingAverageYDM>},
    {"ImageRef ", "MovingAverageZ(ImageRef imgSrc, long nRad, ImageRef imgDst)",
     binding::add_function<MovingAverageZDM>},
    {"ImageRef ", "GaussianBlur(ImageRef imgSrc, double fRad, long nOrder, ImageRef imgDst)",
     binding::add_function<GaussianBlurDM>},
};

}  // namespace

const dm::script_functions smoothing_functions{rows};

}  // namespace qorv::functions
