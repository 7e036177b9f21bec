#include "functions/statistics/statistics_entry.h"

#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/statistics/center_of_mass.h"
#include "functions/statistics/min_max.h"
#include "functions/statistics/radial_survey.h"
#include "functions/statistics/survey.h"
#include "functions/statistics/survey_difference.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using binding::output;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

/// Locks an image of any real type and returns find(view).
/// Throws  errors::should_be_real for another type
template <class Find>
auto found_in(const image_ref& source, Find find)
{
    const std::uint32_t type = dm::required_type(dm::eight_reals{}, source, dm::errors::should_be_real);
    return dm::with_locks(reading{source}, [&](const read_lock& from) {
        decltype(find(dm::image<const float>{})) found{};
        visit(dm::eight_reals{}, type, [&]<class T>() { found = find(from.view<T>()); });
        return found;
    });
}

/// The output parameters for an element's position.
struct position_outputs
{
    output<std::int32_t> x, y, z;
    void set(const extremum& e) const { x.set(e.x), y.set(e.y), z.set(e.z); }
};

/// The body of MinMax and MinMaxStable: the kernel is stable in either case.
void store_extrema(const image_ref& source, const position_outputs& min_place, const output<double>& min,
                   const position_outputs& max_place, const output<double>& max)
{
    const auto [smallest, greatest] =
        found_in(source, []<class T>(const dm::image<const T>& pixels) { return min_max<T>(pixels); });
    min_place.set(smallest);
    min.set(smallest.value);
    max_place.set(greatest);
    max.set(greatest.value);
}

/// The element type of a radial profile. A float holds 8- and 16-bit integers and floats exactly.
dm::data_type profile_type(std::uint32_t code)
{
    switch (static_cast<dm::data_type>(code)) {
        case dm::data_type::int32:
        case dm::data_type::uint32:
        case dm::data_type::float64: return dm::data_type::float64;
        default: return dm::data_type::float32;
    }
}

void SurveyDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum, output<double> fSqsum,
              output<double> fSumAbs)
{
    const dm::timing_scope timing{"SurveyDM"};
    dm::require_image(imgSrc);
    const auto type = static_cast<std::uint32_t>(binding::GetDataType(imgSrc));
    const auto record = dm::with_locks(reading{imgSrc}, [&](const read_lock& from) {
        survey_record found;
        const bool known = visit(dm::eight_reals{}, type, [&]<class T>() { found = survey(from.view<T>()); });
        dm::require(known, dm::errors::invalid_data_type);
        return found;
    });
    fMin.set(record.minimum);
    fMax.set(record.maximum);
    fSum.set(record.sum);
    fSqsum.set(record.sum_of_squares);
    fSumAbs.set(record.sum_of_absolutes);
}

void SurveyFourDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum,
                  output<double> fSqsum)
{
    SurveyDM(std::move(imgSrc), fMin, fMax, fSum, fSqsum, {});
}

void SurveyDifferenceDM(image_ref imgSrc1, image_ref imgSrc2, output<double> fSum1, output<double> fSqSum1,
                        output<double> fSum2, output<double> fSqSum2, output<double> fSumDiff,
                        output<double> fSumSqDiff, output<double> fSumAbsDiff)
{
    const dm::timing_scope timing{"SurveyDifferenceDM"};
    const std::uint32_t type = dm::required_type(dm::eight_reals{}, imgSrc1, dm::errors::all_real);
    const std::uint32_t other_type = dm::required_type(dm::eight_reals{}, imgSrc2, dm::errors::all_real);
    dm::require(type == other_type, dm::errors::invalid_image_type);
    const auto compare = [&](const read_lock& first, const read_lock& second) {
        difference_survey found;
        visit(dm::eight_reals{}, type,
              [&]<class T>() { found = survey_difference<T>(first.view<T>(), second.view<T>()); });
        return found;
    };
    const difference_survey sums = dm::with_locks(reading{imgSrc1}, reading{imgSrc2}, compare);
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
    store_extrema(imgSrc, {nMinX, nMinY, nMinZ}, fMin, {nMaxX, nMaxY, nMaxZ}, fMax);
}

void MinMaxDM(image_ref imgSrc, output<std::int32_t> nMinX, output<std::int32_t> nMinY, output<std::int32_t> nMinZ,
              output<double> fMin, output<std::int32_t> nMaxX, output<std::int32_t> nMaxY, output<std::int32_t> nMaxZ,
              output<double> fMax)
{
    const dm::timing_scope timing{"MinMaxDM"};
    store_extrema(imgSrc, {nMinX, nMinY, nMinZ}, fMin, {nMaxX, nMaxY, nMaxZ}, fMax);
}

double MinDM(image_ref imgSrc, output<std::int32_t> nX, output<std::int32_t> nY, output<std::int32_t> nZ)
{
    const dm::timing_scope timing{"MinDM"};
    const auto smallest = found_in(imgSrc, []<class T>(const dm::image<const T>& pixels) { return min_of<T>(pixels); });
    position_outputs{nX, nY, nZ}.set(smallest);
    return smallest.value;
}

double MaxDM(image_ref imgSrc, output<std::int32_t> nX, output<std::int32_t> nY, output<std::int32_t> nZ)
{
    const dm::timing_scope timing{"MaxDM"};
    const auto greatest = found_in(imgSrc, []<class T>(const dm::image<const T>& pixels) { return max_of<T>(pixels); });
    position_outputs{nX, nY, nZ}.set(greatest);
    return greatest.value;
}

image_ref RadialSurveyDM(image_ref imgSrc, std::int32_t nCX, std::int32_t nCY, double fScaleX, double fScaleY)
{
    const dm::timing_scope timing{"RadialSurveyDM"};
    const std::uint32_t type = dm::required_type(dm::eight_reals{}, imgSrc, dm::errors::should_be_real);
    return dm::with_locks(reading{imgSrc}, [&](const read_lock& from) {
        const radial_grid grid{nCX, nCY, fScaleX, fScaleY};
        const auto length = static_cast<std::uint32_t>(radial_length(grid, from.sizes()));
        std::vector<std::uint32_t> sizes{length};
        if (from.depth() > 1) sizes.push_back(static_cast<std::uint32_t>(from.depth()));
        const dm::data_type result_type = profile_type(type);
        image_ref profile = binding::NewImage("Radial survey", static_cast<std::uint32_t>(result_type), sizes);
        dm::with_locks(writing{profile}, [&](const write_lock& to) {
            visit(dm::eight_reals{}, type, [&]<class T>() {
                if (result_type == dm::data_type::float64)
                    radial_survey<T, double>(from.view<T>(), grid, to.view<double>());
                else
                    radial_survey<T, float>(from.view<T>(), grid, to.view<float>());
            });
        });
        return profile;
    });
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

constexpr dm::script_function rows[] = {
    {"void ", "Survey(ImageRef imgSrc, double * fMin, double * fMax, double * fSum, double * fSqsum, double * fSumAbs)",
     binding::add_function<SurveyDM>},
    {"void ", "Survey(ImageRef imgSrc, double * fMin, double * fMax, double * fSum, double * fSqsum)",
     binding::add_function<SurveyFourDM>},
    {"void ",
     "SurveyDifference(ImageRef imgSrc1, ImageRef imgSrc2, double * fSum1, double * fSqSum1, double * fSum2, double * "
     "fSqSum2, double * fSumDiff, double * fSumSqDiff, double * fSumAbsDiff)",
     binding::add_function<SurveyDifferenceDM>},
    {"void ",
     "MinMaxStable(ImageRef imgSrc, long * nMinX, long * nMinY, long * nMinZ, double * fMin, long * nMaxX, long * "
     "nMaxY, long * nMaxZ, double * fMax)",
     binding::add_function<MinMaxStableDM>},
    {"void ",
     "MinMax(ImageRef imgSrc, long * nMinX, long * nMinY, long * nMinZ, double * fMin, long * nMaxX, long * nMaxY, "
     "long * nMaxZ, double * fMax)",
     binding::add_function<MinMaxDM>},
    {"double ", "Min(ImageRef imgSrc, long * nX, long * nY, long * nZ)", binding::add_function<MinDM>},
    {"double ", "Max(ImageRef imgSrc, long * nX, long * nY, long * nZ)", binding::add_function<MaxDM>},
    {"ImageRef ", "RadialSurvey(Image * imgSrc, long nCX, long nCY, double fScaleX, double fScaleY )",
     binding::add_function<RadialSurveyDM>},
};

constexpr dm::script_function center_of_mass_rows[] = {
    {"long ",
     "GetCenterOfMass(ImageRef imgSrc, double * fX, double * fY, double fRad, long nCycles, double fThreshold)",
     binding::add_function<GetCenterOfMassDM>},
};

}  // namespace

const dm::script_functions statistics_functions{rows};
const dm::script_functions center_of_mass_functions{center_of_mass_rows};

}  // namespace qorv::functions
