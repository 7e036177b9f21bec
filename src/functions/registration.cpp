#include "library/registration.h"

#include <string>

#include "library/elementwise_entry.h"
#include "library/files_entry.h"
#include "library/rank_entry.h"
#include "library/reciprocal_entry.h"
#include "library/smoothing_entry.h"
#include "library/statistics_entry.h"
#include "library/survey_entry.h"
#include "library/transpose_entry.h"
#include "library/utility_entry.h"
#include "library/window_entry.h"
#include "plugin/host/native.h"

namespace qorv::library {
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
    {"long ", "PadSize(long n)", host::add_function<PadSizeDM>},
    {"long ", "ToDMDataType(long eType)", host::add_function<ToDMDataTypeDM>},
    {"void ", "SetNumThreads(long n)", host::add_function<SetNumThreadsDM>},
    {"long ", "GetNumThreads()", host::add_function<GetNumThreadsDM>},
    {"long ", "GetMaxThreads()", host::add_function<GetMaxThreadsDM>},
    {"dm_string ", "GetSpecialDirectory(long eType, long doCreate)", host::add_function<GetSpecialDirectoryDM>},
    {"TagGroup ", "SelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType)",
     host::add_function<SelectImageFilesDM>},
    {"TagGroup ",
     "SelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType,char* cOwnerName)",
     host::add_function<SelectImageFilesOwnedDM>},
    {"ImageRef ", "OpenImage(string path, long nW, long nH, long nD, long eType)", host::add_function<OpenImageDM>},
    {"ComplexImagePtr ", "Polar(ImageRef imgRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
     host::add_function<Polar1DM>},
    {"ComplexImagePtr ", "Polar(double fRho, ImageRef imgTheta, ComplexImagePtr cimDst)", host::add_function<Polar2DM>},
    {"void ", "AbsArg(ComplexImagePtr cimSrc, ImageRef * imgRho, ImageRef * imgTheta)", host::add_function<AbsArgDM>},
    {"ImageRef ", "Abs(ComplexImagePtr cimSrc, ImageRef imgDst)", host::add_function<AbsDM>},
    {"ImageRef ", "Exp2(ImageRef imgA, ImageRef imgDst)", host::add_function<Exp2DM>},
    {"ImageRef ", "Log2(ImageRef imgA, ImageRef imgDst)", host::add_function<Log2DM>},
    {"ImageRef ", "Pow(ImageRef imgA, ImageRef imgB, ImageRef imgDst)", host::add_function<PowDM>},
    {"ComplexImagePtr ", "CArg(ComplexImagePtr cimSrc, ComplexImagePtr cimDst)", host::add_function<CArgDM>},
    {"ImageRef ", "Norm(ComplexImagePtr cimSrc, double fScale, ImageRef imgDst)", host::add_function<CNormDM>},
    {"ImageRef ", "MovingAverage(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MovingAverageDM>},
    {"void ", "MovingAverage2(ImageRef imgSrc, long nRad, ImageRef* imgDst1, ImageRef* imgDst2)",
     host::add_function<MovingAverageDM2>},
    {"ImageRef ", "MovingAverageX(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MovingAverageXDM>},
    {"ImageRef ", "MovingAverageY(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MovingAverageYDM>},
    {"ImageRef ", "MovingAverageZ(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MovingAverageZDM>},
    {"ImageRef ", "GaussianBlur(ImageRef imgSrc, double fRad, long nOrder, ImageRef imgDst)",
     host::add_function<GaussianBlurDM>},
    {"ImageRef ", "MaximumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MaximumFilterDM>},
    {"ImageRef ", "MinimumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MinimumFilterDM>},
    {"ImageRef ", "MedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst , long nUseZeroPadding )",
     host::add_function<MedianFilterDM2>},
    {"ImageRef ", "MedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)", host::add_function<MedianFilterDM>},
    {"double ", "NthElement(ImageRef imgSrc, long n)", host::add_function<NthElementDM>},
    {"double ", "Median(ImageRef imgSrc)", host::add_function<MedianDM>},
    {"ImageRef ", "MedianZ(ImageRef imgSrc, ImageRef imgDst)", host::add_function<MedianZDM>},
    {"void ", "Survey(ImageRef imgSrc, double * fMin, double * fMax, double * fSum, double * fSqsum, double * fSumAbs)",
     host::add_function<SurveyDM>},
    {"void ", "Survey(ImageRef imgSrc, double * fMin, double * fMax, double * fSum, double * fSqsum)",
     host::add_function<SurveyFourDM>},
    {"void ",
     "SurveyDifference(ImageRef imgSrc1, ImageRef imgSrc2, double * fSum1, double * fSqSum1, double * fSum2, double * "
     "fSqSum2, double * fSumDiff, double * fSumSqDiff, double * fSumAbsDiff)",
     host::add_function<SurveyDifferenceDM>},
    {"void ",
     "MinMaxStable(ImageRef imgSrc, long * nMinX, long * nMinY, long * nMinZ, double * fMin, long * nMaxX, long * "
     "nMaxY, long * nMaxZ, double * fMax)",
     host::add_function<MinMaxStableDM>},
    {"void ",
     "MinMax(ImageRef imgSrc, long * nMinX, long * nMinY, long * nMinZ, double * fMin, long * nMaxX, long * nMaxY, "
     "long * nMaxZ, double * fMax)",
     host::add_function<MinMaxDM>},
    {"double ", "Min(ImageRef imgSrc, long * nX, long * nY, long * nZ)", host::add_function<MinDM>},
    {"double ", "Max(ImageRef imgSrc, long * nX, long * nY, long * nZ)", host::add_function<MaxDM>},
    {"ImageRef ", "RadialSurvey(Image * imgSrc, long nCX, long nCY, double fScaleX, double fScaleY )",
     host::add_function<RadialSurveyDM>},
    {"ImageRef ",
     "Weight(ImageRef imgSrc, ImageRef imgW, long nCX, long nCY, float fScaleX, float fScaleY, long eMode, ImageRef "
     "imgDst)",
     host::add_function<WeightDM>},
    {"long ",
     "GetCenterOfMass(ImageRef imgSrc, double * fX, double * fY, double fRad, long nCycles, double fThreshold)",
     host::add_function<GetCenterOfMassDM>},
    {"void ", "SortNumberedName(TagGroup tFiles)", host::add_function<SortNumberedNameDM>},
    {"ImageRef ", "FTWindow(ImageRef imgSrc, long eMode,ImageRef imgDst)", host::add_function<FTWindowDM>},
    {"ImageRef ", "HanningWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     host::add_function<HanningWindowDM>},
    {"ComplexImagePtr ", "HanningWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     host::add_function<HanningWindowComplexDM>},
    {"ImageRef ", "SineWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     host::add_function<SineWindowDM>},
    {"ComplexImagePtr ", "SineWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     host::add_function<SineWindowComplexDM>},
    {"ImageRef ", "VorbisWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
     host::add_function<VorbisWindowDM>},
    {"ComplexImagePtr ", "VorbisWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
     host::add_function<VorbisWindowComplexDM>},
    {"ComplexImagePtr ",
     "Mask(ComplexImagePtr cimSrc, ComplexImagePtr cimPeaks, ImageRef imgMtx, float fRad, float fH, ComplexImagePtr "
     "cimDst)",
     host::add_function<MaskDM>},
    {"ComplexImagePtr ",
     "CrossCorrelationMaskWithDefocus(ComplexImagePtr cimTarg, ComplexImagePtr cimRef, long nCX, long nCY, float "
     "fScaleX, float fScaleY, float f, float fRad, long eMode, double * fMean, ComplexImagePtr cimDst)",
     host::add_function<CrossCorrelationMaskWithDefocusDM>},
    {"void ", "Exec(dm_string strCommandLine)", host::add_function<ExecDM>},
    {"void ", "ExecWait(dm_string strCommandLine)", host::add_function<ExecWaitDM>},
    {"void ", "ShellExec(dm_string strCommandLine)", host::add_function<ShellExecDM>},
    {"ImageRef ", "TransposeXZ(ImageRef imgSrc, ImageRef imgDst)", host::add_function<TransposeXZDM>},
    {"ImageRef ", "TransposeYZ(ImageRef imgSrc, ImageRef imgDst)", host::add_function<TransposeYZDM>},
};

}  // namespace

void register_library(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix)
{
    for (const auto& [returns, signature, add] : entries) add(plug_in, returns + prefix + signature);
}

}  // namespace qorv::library
