#include "functions/statistics/statistics_entry.h"

#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/reciprocal/weight.h"
#include "functions/statistics/center_of_mass.h"
#include "functions/statistics/min_max.h"
#include "functions/statistics/radial_survey.h"
#include "functions/statistics/survey_difference.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

/// The host's code of an image's element type.
/// Throws  errors::parameters_invalid for a null image, `text` for a type that is not in the list
template <class List>
std::uint32_t required_type(List list, const image_ref& image, const char* text)
{
    dm::require_image(image);
    const std::uint32_t code = binding::ImageGetDataType(image);
    dm::require(has_type(list, code), text);
    return code;
}

/// What `find(view)` finds in an image of any real type.
template <class Find>
auto found_in(const image_ref& source, Find find)
{
    const std::uint32_t type = required_type(dm::eight_reals{}, source, dm::errors::should_be_real);
    dm::read_lock from{source};
    decltype(find(dm::image<const float>{})) found{};
    visit(dm::eight_reals{}, type, [&]<class T>() { found = find(from.view<T>()); });
    from.release();
    return found;
}

struct place_outputs
{
    output<std::int32_t> x, y, z;
    void set(const extremum& e) const { x.set(e.x), y.set(e.y), z.set(e.z); }
};

extrema min_max_of(const image_ref& source)
{
    return found_in(source, []<class T>(const dm::image<const T>& pixels) { return min_max<T>(pixels); });
}

/// A float holds 8- and 16-bit integers and floats without loss, the other types need a double.
dm::data_type profile_type(std::uint32_t code)
{
    switch (static_cast<dm::data_type>(code)) {
        case dm::data_type::int32:
        case dm::data_type::uint32:
        case dm::data_type::float64: return dm::data_type::float64;
        default: return dm::data_type::float32;
    }
}

}  // namespace

void SurveyDifferenceDM(image_ref imgSrc1, image_ref imgSrc2, output<double> fSum1, output<double> fSqSum1,
                        output<double> fSum2, output<double> fSqSum2, output<double> fSumDiff,
                        output<double> fSumSqDiff, output<double> fSumAbsDiff)
{
    const dm::timing_scope timing{"SurveyDifferenceDM"};
    const std::uint32_t type = required_type(dm::eight_reals{}, imgSrc1, dm::errors::all_real);
    const std::uint32_t other_type = required_type(dm::eight_reals{}, imgSrc2, dm::errors::all_real);
    dm::require(type == other_type, dm::errors::invalid_image_type);
    dm::read_lock first{imgSrc1}, second{imgSrc2};
    difference_survey sums;
    visit(dm::eight_reals{}, type, [&]<class T>() { sums = survey_difference<T>(first.view<T>(), second.view<T>()); });
    second.release();
    first.release();
    fSum1.set(sums.sum1);
    fSqSum1.set(sums.square_sum1);
    fSum2.set(sums.sum2);
    fSqSum2.set(sums.square_sum2);
    fSumDiff.set(sums.difference_sum);
    fSumSqDiff.set(sums.difference_square_sum);
    fSumAbsDiff.set(sums.difference_absolute_sum);
}

void MinMaxStableDM(image_ref imgSrc, output<std::int32_t> nMinX, output<std::int32_t> nMinY,
                    output<std::int32_t> nMinZ, output<double> fMin, output<std::int32_t> nMaxX,
                    output<std::int32_t> nMaxY, output<std::int32_t> nMaxZ, output<double> fMax)
{
    const dm::timing_scope timing{"MinMaxStableDM"};
    const auto [smallest, greatest] = min_max_of(imgSrc);
    place_outputs{nMinX, nMinY, nMinZ}.set(smallest);
    fMin.set(smallest.value);
    place_outputs{nMaxX, nMaxY, nMaxZ}.set(greatest);
    fMax.set(greatest.value);
}

// The kernel is stable and fast at once, so both names do the same.
void MinMaxDM(image_ref imgSrc, output<std::int32_t> nMinX, output<std::int32_t> nMinY, output<std::int32_t> nMinZ,
              output<double> fMin, output<std::int32_t> nMaxX, output<std::int32_t> nMaxY, output<std::int32_t> nMaxZ,
              output<double> fMax)
{
    const dm::timing_scope timing{"MinMaxDM"};
    const auto [smallest, greatest] = min_max_of(imgSrc);
    place_outputs{nMinX, nMinY, nMinZ}.set(smallest);
    fMin.set(smallest.value);
    place_outputs{nMaxX, nMaxY, nMaxZ}.set(greatest);
    fMax.set(greatest.value);
}

double MinDM(image_ref imgSrc, output<std::int32_t> nX, output<std::int32_t> nY, output<std::int32_t> nZ)
{
    const dm::timing_scope timing{"MinDM"};
    const auto smallest = found_in(imgSrc, []<class T>(const dm::image<const T>& pixels) { return min_of<T>(pixels); });
    place_outputs{nX, nY, nZ}.set(smallest);
    return smallest.value;
}

double MaxDM(image_ref imgSrc, output<std::int32_t> nX, output<std::int32_t> nY, output<std::int32_t> nZ)
{
    const dm::timing_scope timing{"MaxDM"};
    const auto greatest = found_in(imgSrc, []<class T>(const dm::image<const T>& pixels) { return max_of<T>(pixels); });
    place_outputs{nX, nY, nZ}.set(greatest);
    return greatest.value;
}

image_ref RadialSurveyDM(image_ref imgSrc, std::int32_t nCX, std::int32_t nCY, double fScaleX, double fScaleY)
{
    const dm::timing_scope timing{"RadialSurveyDM"};
    const std::uint32_t type = required_type(dm::eight_reals{}, imgSrc, dm::errors::should_be_real);
    dm::read_lock from{imgSrc};
    const radial_grid grid{nCX, nCY, fScaleX, fScaleY};
    const auto length = static_cast<std::uint32_t>(radial_length(grid, from.sizes()));
    std::vector<std::uint32_t> sizes{length};
    if (from.depth() > 1) sizes.push_back(static_cast<std::uint32_t>(from.depth()));
    const dm::data_type result_type = profile_type(type);
    image_ref profile = binding::NewImage("Radial survey", static_cast<std::uint32_t>(result_type), sizes);
    dm::write_lock to{profile};
    visit(dm::eight_reals{}, type, [&]<class T>() {
        if (result_type == dm::data_type::float64)
            radial_survey<T, double>(from.view<T>(), grid, to.view<double>());
        else
            radial_survey<T, float>(from.view<T>(), grid, to.view<float>());
    });
    to.release();
    from.release();
    return profile;
}

image_ref WeightDM(image_ref imgSrc, image_ref imgW, std::int32_t nCX, std::int32_t nCY, float fScaleX, float fScaleY,
                   std::int32_t eMode, image_ref imgDst)
{
    const dm::timing_scope timing{"WeightDM"};
    const std::uint32_t type = required_type(dm::real_or_complex{}, imgSrc, dm::errors::all_real_or_complex);
    const std::uint32_t curve_type = required_type(dm::float_or_double{}, imgW, dm::errors::should_be_real4_or_real8);
    imgDst = dm::or_clone_of(std::move(imgDst), imgSrc);
    dm::require(binding::ImageGetDataType(imgDst) == type, dm::errors::invalid_image_type);
    const weight_mode mode = weight_mode_of(eMode);
    dm::read_lock from{imgSrc}, curve{imgW};
    dm::write_lock to{imgDst};
    const radial_grid grid{nCX, nCY, fScaleX, fScaleY};
    visit(dm::real_or_complex{}, type, [&]<class T>() {
        visit(dm::float_or_double{}, curve_type,
              [&]<class Curve>() { weight<T, Curve>(from.view<T>(), curve.view<Curve>(), grid, mode, to.view<T>()); });
    });
    to.release();
    curve.release();
    from.release();
    return imgDst;
}

std::int32_t GetCenterOfMassDM(image_ref imgSrc, output<double> fX, output<double> fY, double fRad,
                               std::int32_t nCycles, double fThreshold)
{
    const dm::timing_scope timing{"GetCenterOfMassDM"};
    position center{fX.get(), fY.get()};
    const std::int32_t cycles = found_in(imgSrc, [&]<class T>(const dm::image<const T>& pixels) {
        return center_of_mass<T>(pixels, center, {fRad, nCycles, fThreshold});
    });
    fX.set(center.x);
    fY.set(center.y);
    return cycles;
}

}  // namespace qorv::functions
