#include "functions/smoothing/smoothing_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/smoothing/gaussian.h"
#include "functions/smoothing/moving_average.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

/// The box filters' entry: `filter(from, to)` gets the typed views.
template <class Filter>
image_ref box_filtered(const image_ref& source, image_ref destination, Filter filter)
{
    dm::require_image(source);
    const std::uint32_t type = binding::ImageGetDataType(source);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require_same_size(source, destination);
    dm::require(has_type(dm::real_or_complex{}, type), dm::errors::invalid_data_type);
    dm::require(binding::ImageGetDataType(destination) == type, dm::errors::invalid_image_type);
    dm::read_lock from{source};
    dm::write_lock to{destination};
    visit(dm::real_or_complex{}, type, [&]<class T>() { filter(from.view<T>(), to.view<T>()); });
    to.release();
    from.release();
    return destination;
}

/// A new single-plane image of the element type `like` has.
image_ref new_plane(std::string_view name, const image_ref& like)
{
    return binding::NewImage(name, binding::ImageGetDataType(like), {dm::size_along(like, 0), dm::size_along(like, 1)});
}

bool fits(const image_ref& image, const image_ref& source)
{
    return image && dm::size_along(image, 0) == dm::size_along(source, 0) &&
           dm::size_along(image, 1) == dm::size_along(source, 1) &&
           binding::ImageGetDataType(image) == binding::ImageGetDataType(source);
}

}  // namespace

image_ref MovingAverageDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst)
{
    const dm::timing_scope timing{"MovingAverageDM"};
    return box_filtered(imgSrc, std::move(imgDst),
                        [&](const auto& from, const auto& to) { moving_average(from, to, nRad); });
}

void MovingAverageDM2(image_ref imgSrc, std::int32_t nRad, output<image_ref> imgDst1, output<image_ref> imgDst2)
{
    const dm::timing_scope timing{"MovingAverageDM2"};
    dm::require_image(imgSrc);
    const std::uint32_t type = binding::ImageGetDataType(imgSrc);
    dm::require(has_type(dm::real_or_complex{}, type), dm::errors::invalid_data_type);
    image_ref mean = imgDst1.get(), squares = imgDst2.get();
    if (!fits(mean, imgSrc) || !fits(squares, imgSrc)) {
        mean = new_plane("Mean", imgSrc);
        squares = new_plane("Mean of squares", imgSrc);
    }
    dm::read_lock from{imgSrc};
    dm::write_lock to_mean{mean};
    dm::write_lock to_squares{squares};
    visit(dm::real_or_complex{}, type,
          [&]<class T>() { moving_average2(from.view<T>(), to_mean.view<T>(), to_squares.view<T>(), nRad); });
    to_squares.release();
    to_mean.release();
    from.release();
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
    dm::read_lock from{imgSrc};
    dm::write_lock to{imgDst};
    visit(dm::float_or_double{}, type, [&]<class T>() { gaussian_blur(from.view<T>(), to.view<T>(), fRad, nOrder); });
    to.release();
    from.release();
    return imgDst;
}

}  // namespace qorv::functions
