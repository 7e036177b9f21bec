#include "functions/registration.h"

#include <string>

#include "binding/native.h"
#include "functions/elementwise/elementwise_entry.h"
#include "functions/files/files_entry.h"
#include "functions/rank/rank_entry.h"
#include "functions/reciprocal/reciprocal_entry.h"
#include "functions/reciprocal/window_entry.h"
#include "functions/smoothing/smoothing_entry.h"
#include "functions/statistics/statistics_entry.h"
#include "functions/statistics/survey_entry.h"
#include "functions/system/utility_entry.h"
#include "functions/transpose/transpose_entry.h"

namespace qorv::functions {
namespace {

/// One script function: return word with its blank, name with parameter list, and what registers it under both joined
/// around the prefix.
struct entry
{
    const char* returns;
    const char* signature;
    void (*add)(Gatan::PlugIn::PlugInMain&, const std::string& prototype);
};

/// The whole library in the order of its registration. Blanks in the texts are as scripts' authors know them.
constexpr entry entries[] = {
    {"long ", "PadSize(long n)", binding::add_function<PadSizeDM>},
    {"long ", "ToDMDataType(long eType)", binding::add_function<ToDMDataTypeDM>},
    {"void ", "SetNumThreads(long n)", binding::add_function<SetNumThreadsDM>},
    {"long ", "GetNumThreads()", binding::add_function<GetNumThreadsDM>},
    {"long ", "GetMaxThreads()", binding::add_function<GetMaxThreadsDM>},
    {"dm_string ", "GetSpecialDirectory(long eType, long doCreate)", binding::add_function<GetSpecialDirectoryDM>},
    {"TagGroup ", "SelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType)",
     binding::add_function<SelectImageFilesDM>},
    {"TagGroup ",
     "SelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType,char* cOwnerName)",
     binding::add_function<SelectImageFilesOwnedDM>},
    {"ImageRef ", "OpenImage(string path, long nW, long nH, long nD, long eType)", binding::add_function<OpenImageDM>},
    {"ComplexImagePtr ", "Polar(ImageRef imgRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
     binding::add_function<Polar1DM>},
    {"ComplexImagePtr ", "Polar(double fRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
     binding::add_function<Polar2DM>},
    {"void ", "AbsArg(ComplexImagePtr cimSrc, ImageRef * imgRho, ImageRef * imgTheta)",
     binding::add_function<AbsArgDM>},
    {"ImageRef ", "Abs(ComplexImagePtr cimSrc, ImageRef imgDst)", binding::add_function<AbsDM>},
    {"ImageRef ", "Exp2(ImageRef imgA, ImageRef imgDst)", binding::add_function<Exp2DM>},
    {"ImageRef ", "Log2(ImageRef imgA, ImageRef imgDst)", binding::add_function<Log2DM>},
    {"ImageRef ", "Pow(ImageRef imgA, ImageRef imgB, ImageRef imgDst)", binding::add_function<PowDM>},
    {"ComplexImagePtr ", "CArg(ComplexImagePtr cimSrc, ComplexImagePtr cimDst)", binding::add_function<CArgDM>},
    {"ImageRef ", "Norm(ComplexImagePtr cimSrc, double fScale, ImageRef imgDst)", binding::add_function<CNormDM>},
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
    {"ImageRef ", "MaximumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MaximumFilterDM>},
    {"ImageRef ", "MinimumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MinimumFilterDM>},
    {"ImageRef ", "MedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst , long nUseZeroPadding )",
     binding::add_function<MedianFilterDM2>},
    {"ImageRef ", "MedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", binding::add_function<MedianFilterDM>},
    {"double ", "NthElement(ImageRef imgSrc, long n)", binding::add_function<NthElementDM>},
    {"double ", "Median(ImageRef imgSrc)", binding::add_function<MedianDM>},
    {"ImageRef ", "MedianZ(ImageRef imgSrc, ImageRef imgDst)", binding::add_function<MedianZDM>},
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
    {"ImageRef ",
     "Weight(ImageRef imgSrc, ImageRef imgW, long nCX, long nCY, float fScaleX, float fScaleY, long eMode, ImageRef "
     "imgDst)",
     binding::add_function<WeightDM>},
    {"long ",
     "GetCenterOfMass(ImageRef imgSrc, double * fX, double * fY, double fRad, long nCycles, double fThreshold)",
     binding::add_function<GetCenterOfMassDM>},
    {"void ", "SortNumberedName(TagGroup tFiles)", binding::add_function<SortNumberedNameDM>},
    {"ImageRef ", "FTWindow(ImageRef imgSrc, long eMode,ImageRef imgDst)", binding::add_function<FTWindowDM>},
    {"ImageRef ", "HanningWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     binding::add_function<HanningWindowDM>},
    {"ComplexImagePtr ", "HanningWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     binding::add_function<HanningWindowComplexDM>},
    {"ImageRef ", "SineWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     binding::add_function<SineWindowDM>},
    {"ComplexImagePtr ", "SineWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     binding::add_function<SineWindowComplexDM>},
    {"ImageRef ", "VorbisWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     binding::add_function<VorbisWindowDM>},
    {"ComplexImagePtr ", "VorbisWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     binding::add_function<VorbisWindowComplexDM>},
    {"ComplexImagePtr ",
     "Mask(ComplexImagePtr cimSrc, ComplexImagePtr cimPeaks, ImageRef imgMtx, float fRad, float fH, ComplexImagePtr "
     "cimDst)",
     binding::add_function<MaskDM>},
    {"ComplexImagePtr ",
     "CrossCorrelationMaskWithDefocus(ComplexImagePtr cimTarg, ComplexImagePtr cimRef, long nCX, long nCY, float "
     "fScaleX, float fScaleY, float f, float fRad, long eMode, double * fMean, ComplexImagePtr cimDst)",
     binding::add_function<CrossCorrelationMaskWithDefocusDM>},
    {"void ", "Exec(dm_string strCommandLine)", binding::add_function<ExecDM>},
    {"void ", "ExecWait(dm_string strCommandLine)", binding::add_function<ExecWaitDM>},
    {"void ", "ShellExec(dm_string strCommandLine)", binding::add_function<ShellExecDM>},
    {"ImageRef ", "TransposeXZ(ImageRef imgSrc, ImageRef imgDst)", binding::add_function<TransposeXZDM>},
    {"ImageRef ", "TransposeYZ(ImageRef imgSrc, ImageRef imgDst)", binding::add_function<TransposeYZDM>},
};

}  // namespace

void register_library(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix)
{
    for (const auto& [returns, signature, add] : entries) add(plug_in, returns + prefix + signature);
}

}  // namespace qorv::functions
