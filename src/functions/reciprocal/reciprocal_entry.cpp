#include "functions/reciprocal/reciprocal_entry.h"

#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/reciprocal/bragg_mask.h"
#include "functions/reciprocal/cross_correlation_mask.h"
#include "functions/reciprocal/weight.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using binding::output;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

std::uint32_t required_complex(const image_ref& image)
{
    return dm::required_type(dm::either_complex{}, image, dm::errors::all_complex);
}

/// The elements of an image as positions: the real part is x, the imaginary part y.
std::vector<peak> peaks_in(const image_ref& list)
{
    return dm::with_locks(reading{list}, [&](const read_lock& from) {
        std::vector<peak> peaks;
        visit(dm::either_complex{}, from.host_code(), [&]<class T>() {
            const auto places = from.view<T>();
            for (std::ptrdiff_t z = 0; z < places.depth(); ++z)
                for (std::ptrdiff_t y = 0; y < places.height(); ++y)
                    for (std::ptrdiff_t x = 0; x < places.width(); ++x)
                        peaks.push_back({places(x, y, z).real(), places(x, y, z).imag()});
        });
        return peaks;
    });
}

lattice lattice_in(const image_ref& matrix, std::ptrdiff_t width, std::ptrdiff_t height)
{
    return dm::with_locks(reading{matrix}, [&](const read_lock& from) {
        lattice points{};
        visit(dm::float_or_double{}, from.host_code(),
              [&]<class T>() { points = lattice::from<T>(from.view<T>(), width, height); });
        return points;
    });
}

image_ref WeightDM(image_ref imgSrc, image_ref imgW, std::int32_t nCX, std::int32_t nCY, float fScaleX, float fScaleY,
                   std::int32_t eMode, image_ref imgDst)
{
    const dm::timing_scope timing{"WeightDM"};
    const std::uint32_t type = dm::required_type(dm::real_or_complex{}, imgSrc, dm::errors::all_real_or_complex);
    const std::uint32_t curve_type =
        dm::required_type(dm::float_or_double{}, imgW, dm::errors::should_be_real4_or_real8);
    imgDst = dm::or_clone_of(std::move(imgDst), imgSrc);
    dm::require(binding::ImageGetDataType(imgDst) == type, dm::errors::invalid_image_type);
    const weight_mode mode = weight_mode_of(eMode);
    const radial_grid grid{nCX, nCY, fScaleX, fScaleY};
    const auto multiply = [&](const read_lock& from, const read_lock& curve, const write_lock& to) {
        visit(dm::real_or_complex{}, type, [&]<class T>() {
            visit(dm::float_or_double{}, curve_type, [&]<class Curve>() {
                weight<T, Curve>(from.view<T>(), curve.view<Curve>(), grid, mode, to.view<T>());
            });
        });
    };
    dm::with_locks(reading{imgSrc}, reading{imgW}, writing{imgDst}, multiply);
    return imgDst;
}

image_ref MaskDM(image_ref cimSrc, image_ref cimPeaks, image_ref imgMtx, float fRad, float fH, image_ref cimDst)
{
    const dm::timing_scope timing{"MaskDM"};
    const std::uint32_t type = required_complex(cimSrc);
    dm::require(cimPeaks || imgMtx, dm::errors::parameters_invalid);
    if (cimPeaks) required_complex(cimPeaks);
    if (imgMtx)
        dm::require(has_type(dm::float_or_double{}, binding::ImageGetDataType(imgMtx)),
                    dm::errors::should_be_real4_or_real8);
    cimDst = dm::or_clone_of(std::move(cimDst), cimSrc);
    dm::require(binding::ImageGetDataType(cimDst) == type, dm::errors::all_same_complex);

    dm::with_locks(reading{cimSrc}, [&](const read_lock& from) {
        const std::ptrdiff_t width = from.width(), height = from.height();
        const disc shape{fRad, fH};
        mask_plane mask;
        if (cimPeaks && imgMtx)
            mask = peak_mask(placed(peaks_in(cimPeaks), lattice_in(imgMtx, width, height)), shape, width, height);
        else if (cimPeaks)
            mask = peak_mask(peaks_in(cimPeaks), shape, width, height);
        else
            mask = lattice_mask(lattice_in(imgMtx, width, height), shape, width, height);

        dm::with_locks(writing{cimDst}, [&](const write_lock& to) {
            visit(dm::either_complex{}, type, [&]<class T>() { apply_mask<T>(from.view<T>(), mask, to.view<T>()); });
        });
    });
    return cimDst;
}

image_ref CrossCorrelationMaskWithDefocusDM(image_ref cimTarg, image_ref cimRef, std::int32_t nCX, std::int32_t nCY,
                                            float fScaleX, float fScaleY, float f, float fRad, std::int32_t eMode,
                                            output<double> fMean, image_ref cimDst)
{
    const dm::timing_scope timing{"CrossCorrelationMaskWithDefocusDM"};
    const std::uint32_t type = required_complex(cimTarg);
    const std::uint32_t reference_type = required_complex(cimRef);
    cimDst = dm::or_clone_of(std::move(cimDst), cimTarg);
    dm::require(reference_type == type && binding::ImageGetDataType(cimDst) == type, dm::errors::all_same_complex);
    const correlation_mode mode = correlation_mode_of(eMode);

    const correlation_filter filter{{nCX, nCY, fScaleX, fScaleY}, f, fRad};
    const auto correlate = [&](const read_lock& target, const read_lock& reference, const write_lock& to) {
        double mean = 0;
        visit(dm::either_complex{}, type, [&]<class T>() {
            mean = cross_correlation_mask<T>(target.view<T>(), reference.view<T>(), filter, mode, to.view<T>());
        });
        return mean;
    };
    fMean.set(dm::with_locks(reading{cimTarg}, reading{cimRef}, writing{cimDst}, correlate));
    return cimDst;
}

constexpr dm::script_function weight_rows[] = {
    {"ImageRef ",
     "Weight(ImageRef imgSrc, ImageRef imgW, long nCX, long nCY, float fScaleX, float fScaleY, long eMode, ImageRef "
     "imgDst)",
     binding::add_function<WeightDM>},
};

constexpr dm::script_function mask_rows[] = {
    {"ComplexImagePtr ",
     "Mask(ComplexImagePtr cimSrc, ComplexImagePtr cimPeaks, ImageRef imgMtx, float fRad, float fH, ComplexImagePtr "
     "cimDst)",
     binding::add_function<MaskDM>},
    {"ComplexImagePtr ",
     "CrossCorrelationMaskWithDefocus(ComplexImagePtr cimTarg, ComplexImagePtr cimRef, long nCX, long nCY, float "
     "fScaleX, float fScaleY, float f, float fRad, long eMode, double * fMean, ComplexImagePtr cimDst)",
     binding::add_function<CrossCorrelationMaskWithDefocusDM>},
};

}  // namespace

const dm::script_functions weight_functions{weight_rows};
const dm::script_functions mask_functions{mask_rows};

}  // namespace qorv::functions
