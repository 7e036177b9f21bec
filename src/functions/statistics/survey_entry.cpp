#include "functions/statistics/survey_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/statistics/survey.h"
#include "image/visit.h"

namespace qorv::functions {

void SurveyDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum, output<double> fSqsum,
              output<double> fSumAbs)
{
    const dm::timing_scope timing{"SurveyDM"};
    dm::require_image(imgSrc);
    const auto type = static_cast<std::uint32_t>(binding::GetDataType(imgSrc));
    dm::read_lock from{imgSrc};
    survey_record record;
    const bool known = visit(dm::eight_reals{}, type, [&]<class T>() { record = survey(from.view<T>()); });
    dm::require(known, dm::errors::invalid_data_type);
    from.release();
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

}  // namespace qorv::functions
