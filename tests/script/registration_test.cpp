#include <gmock/gmock.h>

#ifndef _WIN32
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>
#endif

#include "tests/script/script_host.h"

// What the library registers, and the small functions that need no image.
namespace {

using namespace script;

const std::vector<std::string> prototypes{
    "void ZXSetUseSIMD(long isUseSIMD)",
    "long ZXPadSize(long n)",
    "long ZXToDMDataType(long eType)",
    "void ZXSetNumThreads(long n)",
    "long ZXGetNumThreads()",
    "long ZXGetMaxThreads()",
    "dm_string ZXGetSpecialDirectory(long eType, long doCreate)",
    "TagGroup ZXSelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType)",
    "TagGroup ZXSelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType,char* "
    "cOwnerName)",
    "ImageRef ZXOpenImage(string path, long nW, long nH, long nD, long eType)",
    "ComplexImagePtr ZXPolar(ImageRef imgRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
    "ComplexImagePtr ZXPolar(double fRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
    "void ZXAbsArg(ComplexImagePtr cimSrc, ImageRef * imgRho, ImageRef * imgTheta)",
    "ImageRef ZXAbs(ComplexImagePtr cimSrc, ImageRef imgDst)",
    "ImageRef ZXExp2(ImageRef imgA, ImageRef imgDst)",
    "ImageRef ZXLog2(ImageRef imgA, ImageRef imgDst)",
    "ImageRef ZXPow(ImageRef imgA, ImageRef imgB, ImageRef imgDst)",
    "ComplexImagePtr ZXCArg(ComplexImagePtr cimSrc, ComplexImagePtr cimDst)",
    "ImageRef ZXNorm(ComplexImagePtr cimSrc, double fScale, ImageRef imgDst)",
    "ImageRef ZXMovingAverage(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "void ZXMovingAverage2(ImageRef imgSrc, long nRad, ImageRef* imgDst1, ImageRef* imgDst2)",
    "ImageRef ZXMovingAverageX(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "ImageRef ZXMovingAverageY(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "ImageRef ZXMovingAverageZ(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "ImageRef ZXGaussianBlur(ImageRef imgSrc, double fRad, long nOrder, ImageRef imgDst)",
    "ImageRef ZXMaximumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "ImageRef ZXMinimumFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "ImageRef ZXMedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst , long nUseZeroPadding )",
    "ImageRef ZXMedianFilter(ImageRef imgSrc, long nRad, ImageRef imgDst)",
    "double ZXNthElement(ImageRef imgSrc, long n)",
    "double ZXMedian(ImageRef imgSrc)",
    "ImageRef ZXMedianZ(ImageRef imgSrc, ImageRef imgDst)",
    "void ZXSurvey(ImageRef imgSrc, double * fMin, double * fMax, double * fSum, double * fSqsum, double * fSumAbs)",
    "void ZXSurvey(ImageRef imgSrc, double * fMin, double * fMax, double * fSum, double * fSqsum)",
    "void ZXSurveyDifference(ImageRef imgSrc1, ImageRef imgSrc2, double * fSum1, double * fSqSum1, double * fSum2, "
    "double * fSqSum2, double * fSumDiff, double * fSumSqDiff, double * fSumAbsDiff)",
    "void ZXMinMaxStable(ImageRef imgSrc, long * nMinX, long * nMinY, long * nMinZ, double * fMin, long * nMaxX, long "
    "* nMaxY, long * nMaxZ, double * fMax)",
    "void ZXMinMax(ImageRef imgSrc, long * nMinX, long * nMinY, long * nMinZ, double * fMin, long * nMaxX, long * "
    "nMaxY, long * nMaxZ, double * fMax)",
    "double ZXMin(ImageRef imgSrc, long * nX, long * nY, long * nZ)",
    "double ZXMax(ImageRef imgSrc, long * nX, long * nY, long * nZ)",
    "ImageRef ZXRadialSurvey(Image * imgSrc, long nCX, long nCY, double fScaleX, double fScaleY )",
    "ImageRef ZXWeight(ImageRef imgSrc, ImageRef imgW, long nCX, long nCY, float fScaleX, float fScaleY, long eMode, "
    "ImageRef imgDst)",
    "long ZXGetCenterOfMass(ImageRef imgSrc, double * fX, double * fY, double fRad, long nCycles, double fThreshold)",
    "void ZXSortNumberedName(TagGroup tFiles)",
    "ImageRef ZXFTWindow(ImageRef imgSrc, long eMode,ImageRef imgDst)",
    "ImageRef ZXHanningWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
    "ComplexImagePtr ZXHanningWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
    "ImageRef ZXSineWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
    "ComplexImagePtr ZXSineWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
    "ImageRef ZXVorbisWindow(ImageRef imgSrc, double fA,double fB,double fC,ImageRef imgDst)",
    "ComplexImagePtr ZXVorbisWindow(ImageRef imgSrc, complex fA,complex fB,complex fC,ComplexImagePtr imgDst)",
    "ComplexImagePtr ZXMask(ComplexImagePtr cimSrc, ComplexImagePtr cimPeaks, ImageRef imgMtx, float fRad, float fH, "
    "ComplexImagePtr cimDst)",
    "ComplexImagePtr ZXCrossCorrelationMaskWithDefocus(ComplexImagePtr cimTarg, ComplexImagePtr cimRef, long nCX, long "
    "nCY, float fScaleX, float fScaleY, float f, float fRad, long eMode, double * fMean, ComplexImagePtr cimDst)",
    "void ZXExec(dm_string strCommandLine)",
    "void ZXExecWait(dm_string strCommandLine)",
    "void ZXShellExec(dm_string strCommandLine)",
    "ImageRef ZXTransposeXZ(ImageRef imgSrc, ImageRef imgDst)",
    "ImageRef ZXTransposeYZ(ImageRef imgSrc, ImageRef imgDst)",
    "ComplexImagePtr ZXWTFMulDLL(ComplexImagePtr cimSrc, float lambda, float step, float c20, complex c22, float c40, "
    "float c60, complex c31, complex c33, complex c42, complex c44, complex c51, complex c53, complex c55, complex "
    "c62, complex c64, complex c66, float c2s, float bdiv, float vib, long  lEnvelope, complex tilt, ComplexImagePtr "
    "cimDst)",
    "ImageRef ZXGoldstain(Image * imgSrc, long nMaxBoxSize)",
    "void ZXSetZentrixHandler( ScriptObject hander, TagGroup tag )",
    "void ZXZentrixPanelUpdate( void )",
    "ComplexImagePtr ZXImageShifterForSemper(ComplexImagePtr cimSrc, long nCX, long nCY, double fShiftX, double "
    "fShiftY, double fSign, ComplexImagePtr cimDst)",
    "long ZXIsPaletteOpen(void )",
    "long ZXIsWindowVisible(void )",
};

TEST(Registration, AllPrototypesInOrder)
{
    script_host script;
    EXPECT_EQ(script.host().functions().prototypes(origin::library), prototypes);
}

TEST(Utilities, PadSizes)
{
    script_host script;
    const std::pair<integer, integer> sizes[] = {{0, 0}, {11, 12}, {1025, 1152}, {1 << 20, 1 << 20}};
    for (const auto& [n, size] : sizes) EXPECT_EQ(script.call("ZXPadSize", {n}), script_value{size}) << n;
}

TEST(Utilities, DataTypeCodes)
{
    script_host script;
    const integer codes[] = {-1, 9, 6, 1, 10, 7, 11, 2, 12, 3, 13};
    for (integer index = -1; index <= 9; ++index)
        EXPECT_EQ(script.call("ZXToDMDataType", {index}), script_value{codes[index + 1]});
    for (integer index : {-2, 10, 2147483647})
        EXPECT_EQ(script.failure("ZXToDMDataType", {index}), "Unknown data type.");
}

TEST(Utilities, ThreadCounts)
{
    script_host script;
    const script_value before = script.call("ZXGetMaxThreads", {});
    script.call("ZXSetNumThreads", {integer{4}});
    EXPECT_EQ(script.call("ZXGetNumThreads", {}), script_value{integer{1}});
    EXPECT_EQ(script.call("ZXGetMaxThreads", {}), script_value{integer{4}});
    script.call("ZXSetNumThreads", {integer{-3}});
    EXPECT_EQ(script.call("ZXGetMaxThreads", {}), script_value{integer{1}});
    script.call("ZXSetNumThreads", {before});
    const auto traces = script.host().records().traces();
    EXPECT_EQ(traces.at("SetNumThreadsDM").reports, 3u);
    EXPECT_EQ(traces.at("GetNumThreadsDM").reports, 1u);
    EXPECT_EQ(traces.at("GetMaxThreadsDM").reports, 3u);
}

TEST(Utilities, SpecialDirectoriesEndInASeparator)
{
    script_host script;
    const auto path = std::get<std::string>(script.call("ZXGetSpecialDirectory", {integer{0x28}, integer{0}}));
    ASSERT_FALSE(path.empty());
#ifdef _WIN32
    EXPECT_EQ(path.back(), '\\');
#else
    EXPECT_EQ(path, std::string{std::getenv("HOME")} + "/");
#endif
    EXPECT_EQ(script.call("ZXGetSpecialDirectory", {integer{0x7777}, integer{0}}), script_value{std::string{}});
}

TEST(Utilities, CommandsRunAndNeverReport)
{
    script_host script;
    const std::string file = "exec_wait_test.txt";
#ifdef _WIN32
    script.call("ZXExecWait", {"cmd /c echo done> " + file});
#else
    script.call("ZXExecWait", {"echo done > " + file});
#endif
    EXPECT_EQ(std::remove(file.c_str()), 0) << "it was written";
    for (const char* function : {"ZXExec", "ZXExecWait"})
        EXPECT_EQ(script.failure(function, {std::string{"no-such-program-anywhere --now"}}), "");
}

#ifndef _WIN32
/// An environment variable with another value for a while; empty afterwards where there was none.
class changed_variable
{
  public:
    changed_variable(const char* name, const std::string& value) : name_{name}
    {
        if (const char* old = std::getenv(name)) before_ = old;
        setenv(name, value.c_str(), 1);
    }
    ~changed_variable() { setenv(name_, before_.c_str(), 1); }

  private:
    const char* name_;
    std::string before_;
};

TEST(Utilities, TheUsersFoldersAreFoundAndMade)
{
    script_host script;
    const auto home = std::filesystem::absolute("special_directory_home");
    std::filesystem::remove_all(home);
    std::filesystem::create_directories(home / "settings");
    const changed_variable at_home{"HOME", home}, settings{"XDG_CONFIG_HOME", home / "settings"};
    std::ofstream{home / "settings/user-dirs.dirs"} << "# made by hand\n\nXDG_DOCUMENTS_DIR=\"$HOME/My papers\"\n"
                                                    << "XDG_MUSIC_DIR=\"" << (home / "tunes").string() << "\"\n";
    const auto folder = [&](integer type, integer make) {
        return std::get<std::string>(script.call("ZXGetSpecialDirectory", {type, make}));
    };
    for (const auto& [type, name] : std::vector<std::pair<integer, const char*>>{
             {0x05, "My papers/"}, {0x0d, "tunes/"}, {0x27, "Pictures/"}, {0x1a, "settings/"}}) {
        const std::string path = home / name;
        EXPECT_EQ(folder(type, 0), std::filesystem::is_directory(path) ? path : "");
        EXPECT_EQ(folder(type, 1), path);
        EXPECT_EQ(folder(type, 0), path);
    }
    std::filesystem::remove_all(home);
}

TEST(Utilities, ACommandInTheBackgroundIsNobodysChild)
{
    script_host script;
    const std::string file = "exec_test.txt";
    std::remove(file.c_str());
    script.call("ZXExec", {"sleep 0.2; echo done > " + file});
    EXPECT_FALSE(std::filesystem::exists(file));  // nobody waited
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    for (int k = 0; k < 500 && !std::filesystem::exists(file); ++k)
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    EXPECT_EQ(std::remove(file.c_str()), 0);
}
#endif

TEST(CoreFunctions, WithoutAPanelQueriesAnswerZero)
{
    script_host script;
    script.call("ZXZentrixPanelUpdate", {});
    EXPECT_EQ(script.call("ZXIsPaletteOpen", {}), script_value{integer{0}});
    EXPECT_EQ(script.call("ZXIsWindowVisible", {}), script_value{integer{0}});
}

TEST(CoreFunctions, EarlierHandlersStayHeldAndNothingElseDoes)
{
    engine host;
    library zentrix{host, ZENTRIX_LIBRARY_FILE};
    const auto set = [&](const char* name) {
        auto tags = memory_tag_group::make_group();
        tags->set("name", std::string{name});
        host.call("ZXSetZentrixHandler", {script_value{std::make_shared<script_object>(name)}, script_value{tags}});
    };
    set("first");
    set("second");
    zentrix.close();
    const auto report = host.report();
    EXPECT_THAT(report.references, testing::UnorderedElementsAre(testing::HasSubstr("script object \"first\""),
                                                                 testing::HasSubstr("tag group")));
    EXPECT_TRUE(report.locks.empty() && report.others.empty() && report.violations.empty());
}

}  // namespace
