"""Types of the script functions, made by tools/python_stubs.py."""

import os
from collections.abc import Mapping, MutableSequence
from typing import Any, NamedTuple, SupportsFloat, SupportsIndex, overload

from numpy.typing import NDArray

from . import Ref, TagGroup, TagList

Number = SupportsIndex | SupportsFloat
Complex = complex | Number
Text = str | os.PathLike[str] | os.PathLike[bytes]
Image = NDArray[Any]
Tags = Mapping[str, Any] | MutableSequence[Any] | TagList

class ZXSelectImageFilesResult(NamedTuple):
    result: TagGroup | TagList
    path: str
    nW: int
    nH: int
    eType: int

class ZXAbsArgResult(NamedTuple):
    imgRho: Image
    imgTheta: Image

class ZXMovingAverage2Result(NamedTuple):
    imgDst1: Image
    imgDst2: Image

class ZXSurveyResult(NamedTuple):
    fMin: float
    fMax: float
    fSum: float
    fSqsum: float
    fSumAbs: float

class ZXSurveyDifferenceResult(NamedTuple):
    fSum1: float
    fSqSum1: float
    fSum2: float
    fSqSum2: float
    fSumDiff: float
    fSumSqDiff: float
    fSumAbsDiff: float

class ZXMinMaxStableResult(NamedTuple):
    nMinX: int
    nMinY: int
    nMinZ: int
    fMin: float
    nMaxX: int
    nMaxY: int
    nMaxZ: int
    fMax: float

class ZXMinMaxResult(NamedTuple):
    nMinX: int
    nMinY: int
    nMinZ: int
    fMin: float
    nMaxX: int
    nMaxY: int
    nMaxZ: int
    fMax: float

class ZXMinResult(NamedTuple):
    result: float
    nX: int
    nY: int
    nZ: int

class ZXMaxResult(NamedTuple):
    result: float
    nX: int
    nY: int
    nZ: int

class ZXGetCenterOfMassResult(NamedTuple):
    result: int
    fX: float
    fY: float

class ZXCrossCorrelationMaskWithDefocusResult(NamedTuple):
    result: Image
    fMean: float

class ScriptFunctions:
    def ZXSetUseSIMD(self, isUseSIMD: Number) -> None: ...
    SetUseSIMD = ZXSetUseSIMD
    def ZXPadSize(self, n: Number) -> int: ...
    PadSize = ZXPadSize
    def ZXToDMDataType(self, eType: Number) -> int: ...
    ToDMDataType = ZXToDMDataType
    def ZXSetNumThreads(self, n: Number) -> None: ...
    SetNumThreads = ZXSetNumThreads
    def ZXGetNumThreads(self) -> int: ...
    GetNumThreads = ZXGetNumThreads
    def ZXGetMaxThreads(self) -> int: ...
    GetMaxThreads = ZXGetMaxThreads
    def ZXGetSpecialDirectory(self, eType: Number, doCreate: Number) -> str: ...
    GetSpecialDirectory = ZXGetSpecialDirectory
    @overload
    def ZXSelectImageFiles(
        self, path: Text, strFilter: Text, nW: Number = ..., nH: Number = ..., eType: Number = ...,
    ) -> ZXSelectImageFilesResult: ...
    @overload
    def ZXSelectImageFiles(
        self, path: Ref | None, strFilter: Text, nW: Ref | None = ..., nH: Ref | None = ..., eType: Ref | None = ...,
    ) -> TagGroup | TagList: ...
    @overload
    def ZXSelectImageFiles(
        self, path: Text, strFilter: Text, nW: Number, nH: Number, eType: Number, cOwnerName: Text,
    ) -> ZXSelectImageFilesResult: ...
    @overload
    def ZXSelectImageFiles(
        self, path: Ref | None, strFilter: Text, nW: Ref | None, nH: Ref | None, eType: Ref | None, cOwnerName: Text,
    ) -> TagGroup | TagList: ...
    SelectImageFiles = ZXSelectImageFiles
    def ZXOpenImage(self, path: Text, nW: Number, nH: Number, nD: Number, eType: Number) -> Image: ...
    OpenImage = ZXOpenImage
    @overload
    def ZXPolar(self, imgRho: Image | None, imgTheta: Image | None, cimDst: Image | None = None) -> Image: ...
    @overload
    def ZXPolar(self, fRho: Number, imgTheta: Image | None, cimDst: Image | None = None) -> Image: ...
    Polar = ZXPolar
    @overload
    def ZXAbsArg(  # type: ignore[misc]
        self, cimSrc: Image | None, imgRho: Image = ..., imgTheta: Image = ...,
    ) -> ZXAbsArgResult: ...
    @overload
    def ZXAbsArg(self, cimSrc: Image | None, imgRho: Ref | None, imgTheta: Ref | None = ...) -> None: ...
    @overload
    def ZXAbsArg(self, cimSrc: Image | None, *, imgRho: Ref | None = ..., imgTheta: Ref | None = ...) -> None: ...
    AbsArg = ZXAbsArg
    def ZXAbs(self, cimSrc: Image | None, imgDst: Image | None = None) -> Image: ...
    Abs = ZXAbs
    def ZXExp2(self, imgA: Image | None, imgDst: Image | None = None) -> Image: ...
    Exp2 = ZXExp2
    def ZXLog2(self, imgA: Image | None, imgDst: Image | None = None) -> Image: ...
    Log2 = ZXLog2
    def ZXPow(self, imgA: Image | None, imgB: Image | None, imgDst: Image | None = None) -> Image: ...
    Pow = ZXPow
    def ZXCArg(self, cimSrc: Image | None, cimDst: Image | None = None) -> Image: ...
    CArg = ZXCArg
    def ZXNorm(self, cimSrc: Image | None, fScale: Number, imgDst: Image | None = None) -> Image: ...
    Norm = ZXNorm
    def ZXMovingAverage(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MovingAverage = ZXMovingAverage
    @overload
    def ZXMovingAverage2(  # type: ignore[misc]
        self, imgSrc: Image | None, nRad: Number, imgDst1: Image = ..., imgDst2: Image = ...,
    ) -> ZXMovingAverage2Result: ...
    @overload
    def ZXMovingAverage2(
        self, imgSrc: Image | None, nRad: Number, imgDst1: Ref | None, imgDst2: Ref | None = ...,
    ) -> None: ...
    @overload
    def ZXMovingAverage2(
        self, imgSrc: Image | None, nRad: Number, *, imgDst1: Ref | None = ..., imgDst2: Ref | None = ...,
    ) -> None: ...
    MovingAverage2 = ZXMovingAverage2
    def ZXMovingAverageX(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MovingAverageX = ZXMovingAverageX
    def ZXMovingAverageY(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MovingAverageY = ZXMovingAverageY
    def ZXMovingAverageZ(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MovingAverageZ = ZXMovingAverageZ
    def ZXGaussianBlur(
        self, imgSrc: Image | None, fRad: Number, nOrder: Number, imgDst: Image | None = None,
    ) -> Image: ...
    GaussianBlur = ZXGaussianBlur
    def ZXMaximumFilter(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MaximumFilter = ZXMaximumFilter
    def ZXMinimumFilter(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MinimumFilter = ZXMinimumFilter
    @overload
    def ZXMedianFilter(
        self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None, *, nUseZeroPadding: Number,
    ) -> Image: ...
    @overload
    def ZXMedianFilter(
        self, imgSrc: Image | None, nRad: Number, imgDst: Image | None, nUseZeroPadding: Number,
    ) -> Image: ...
    @overload
    def ZXMedianFilter(self, imgSrc: Image | None, nRad: Number, imgDst: Image | None = None) -> Image: ...
    MedianFilter = ZXMedianFilter
    def ZXNthElement(self, imgSrc: Image | None, n: Number) -> float: ...
    NthElement = ZXNthElement
    def ZXMedian(self, imgSrc: Image | None) -> float: ...
    Median = ZXMedian
    def ZXMedianZ(self, imgSrc: Image | None, imgDst: Image | None = None) -> Image: ...
    MedianZ = ZXMedianZ
    @overload
    def ZXSurvey(  # type: ignore[misc]
        self, imgSrc: Image | None, fMin: Number = ..., fMax: Number = ..., fSum: Number = ..., fSqsum: Number = ...,
        fSumAbs: Number = ...,
    ) -> ZXSurveyResult: ...
    @overload
    def ZXSurvey(
        self, imgSrc: Image | None, fMin: Ref | None, fMax: Ref | None = ..., fSum: Ref | None = ...,
        fSqsum: Ref | None = ..., fSumAbs: Ref | None = ...,
    ) -> None: ...
    @overload
    def ZXSurvey(
        self, imgSrc: Image | None, *, fMin: Ref | None = ..., fMax: Ref | None = ..., fSum: Ref | None = ...,
        fSqsum: Ref | None = ..., fSumAbs: Ref | None = ...,
    ) -> None: ...
    Survey = ZXSurvey
    @overload
    def ZXSurveyDifference(  # type: ignore[misc]
        self, imgSrc1: Image | None, imgSrc2: Image | None, fSum1: Number = ..., fSqSum1: Number = ...,
        fSum2: Number = ..., fSqSum2: Number = ..., fSumDiff: Number = ..., fSumSqDiff: Number = ...,
        fSumAbsDiff: Number = ...,
    ) -> ZXSurveyDifferenceResult: ...
    @overload
    def ZXSurveyDifference(
        self, imgSrc1: Image | None, imgSrc2: Image | None, fSum1: Ref | None, fSqSum1: Ref | None = ...,
        fSum2: Ref | None = ..., fSqSum2: Ref | None = ..., fSumDiff: Ref | None = ..., fSumSqDiff: Ref | None = ...,
        fSumAbsDiff: Ref | None = ...,
    ) -> None: ...
    @overload
    def ZXSurveyDifference(
        self, imgSrc1: Image | None, imgSrc2: Image | None, *, fSum1: Ref | None = ..., fSqSum1: Ref | None = ...,
        fSum2: Ref | None = ..., fSqSum2: Ref | None = ..., fSumDiff: Ref | None = ..., fSumSqDiff: Ref | None = ...,
        fSumAbsDiff: Ref | None = ...,
    ) -> None: ...
    SurveyDifference = ZXSurveyDifference
    @overload
    def ZXMinMaxStable(  # type: ignore[misc]
        self, imgSrc: Image | None, nMinX: Number = ..., nMinY: Number = ..., nMinZ: Number = ..., fMin: Number = ...,
        nMaxX: Number = ..., nMaxY: Number = ..., nMaxZ: Number = ..., fMax: Number = ...,
    ) -> ZXMinMaxStableResult: ...
    @overload
    def ZXMinMaxStable(
        self, imgSrc: Image | None, nMinX: Ref | None, nMinY: Ref | None = ..., nMinZ: Ref | None = ...,
        fMin: Ref | None = ..., nMaxX: Ref | None = ..., nMaxY: Ref | None = ..., nMaxZ: Ref | None = ...,
        fMax: Ref | None = ...,
    ) -> None: ...
    @overload
    def ZXMinMaxStable(
        self, imgSrc: Image | None, *, nMinX: Ref | None = ..., nMinY: Ref | None = ..., nMinZ: Ref | None = ...,
        fMin: Ref | None = ..., nMaxX: Ref | None = ..., nMaxY: Ref | None = ..., nMaxZ: Ref | None = ...,
        fMax: Ref | None = ...,
    ) -> None: ...
    MinMaxStable = ZXMinMaxStable
    @overload
    def ZXMinMax(  # type: ignore[misc]
        self, imgSrc: Image | None, nMinX: Number = ..., nMinY: Number = ..., nMinZ: Number = ..., fMin: Number = ...,
        nMaxX: Number = ..., nMaxY: Number = ..., nMaxZ: Number = ..., fMax: Number = ...,
    ) -> ZXMinMaxResult: ...
    @overload
    def ZXMinMax(
        self, imgSrc: Image | None, nMinX: Ref | None, nMinY: Ref | None = ..., nMinZ: Ref | None = ...,
        fMin: Ref | None = ..., nMaxX: Ref | None = ..., nMaxY: Ref | None = ..., nMaxZ: Ref | None = ...,
        fMax: Ref | None = ...,
    ) -> None: ...
    @overload
    def ZXMinMax(
        self, imgSrc: Image | None, *, nMinX: Ref | None = ..., nMinY: Ref | None = ..., nMinZ: Ref | None = ...,
        fMin: Ref | None = ..., nMaxX: Ref | None = ..., nMaxY: Ref | None = ..., nMaxZ: Ref | None = ...,
        fMax: Ref | None = ...,
    ) -> None: ...
    MinMax = ZXMinMax
    @overload
    def ZXMin(  # type: ignore[misc]
        self, imgSrc: Image | None, nX: Number = ..., nY: Number = ..., nZ: Number = ...,
    ) -> ZXMinResult: ...
    @overload
    def ZXMin(self, imgSrc: Image | None, nX: Ref | None, nY: Ref | None = ..., nZ: Ref | None = ...) -> float: ...
    @overload
    def ZXMin(
        self, imgSrc: Image | None, *, nX: Ref | None = ..., nY: Ref | None = ..., nZ: Ref | None = ...,
    ) -> float: ...
    Min = ZXMin
    @overload
    def ZXMax(  # type: ignore[misc]
        self, imgSrc: Image | None, nX: Number = ..., nY: Number = ..., nZ: Number = ...,
    ) -> ZXMaxResult: ...
    @overload
    def ZXMax(self, imgSrc: Image | None, nX: Ref | None, nY: Ref | None = ..., nZ: Ref | None = ...) -> float: ...
    @overload
    def ZXMax(
        self, imgSrc: Image | None, *, nX: Ref | None = ..., nY: Ref | None = ..., nZ: Ref | None = ...,
    ) -> float: ...
    Max = ZXMax
    def ZXRadialSurvey(
        self, imgSrc: Image | None, nCX: Number, nCY: Number, fScaleX: Number, fScaleY: Number,
    ) -> Image: ...
    RadialSurvey = ZXRadialSurvey
    def ZXWeight(
        self, imgSrc: Image | None, imgW: Image | None, nCX: Number, nCY: Number, fScaleX: Number, fScaleY: Number,
        eMode: Number, imgDst: Image | None = None,
    ) -> Image: ...
    Weight = ZXWeight
    @overload
    def ZXGetCenterOfMass(
        self, imgSrc: Image | None, fX: Number, fY: Number, fRad: Number, nCycles: Number, fThreshold: Number,
    ) -> ZXGetCenterOfMassResult: ...
    @overload
    def ZXGetCenterOfMass(
        self, imgSrc: Image | None, fX: Ref | None, fY: Ref | None, fRad: Number, nCycles: Number, fThreshold: Number,
    ) -> int: ...
    GetCenterOfMass = ZXGetCenterOfMass
    def ZXSortNumberedName(self, tFiles: Tags | None) -> None: ...
    SortNumberedName = ZXSortNumberedName
    def ZXFTWindow(self, imgSrc: Image | None, eMode: Number, imgDst: Image | None = None) -> Image: ...
    FTWindow = ZXFTWindow
    @overload
    def ZXHanningWindow(
        self, imgSrc: Image | None, fA: Number, fB: Number, fC: Number, imgDst: Image | None = None,
    ) -> Image: ...
    @overload
    def ZXHanningWindow(
        self, imgSrc: Image | None, fA: Complex, fB: Complex, fC: Complex, imgDst: Image | None = None,
    ) -> Image: ...
    HanningWindow = ZXHanningWindow
    @overload
    def ZXSineWindow(
        self, imgSrc: Image | None, fA: Number, fB: Number, fC: Number, imgDst: Image | None = None,
    ) -> Image: ...
    @overload
    def ZXSineWindow(
        self, imgSrc: Image | None, fA: Complex, fB: Complex, fC: Complex, imgDst: Image | None = None,
    ) -> Image: ...
    SineWindow = ZXSineWindow
    @overload
    def ZXVorbisWindow(
        self, imgSrc: Image | None, fA: Number, fB: Number, fC: Number, imgDst: Image | None = None,
    ) -> Image: ...
    @overload
    def ZXVorbisWindow(
        self, imgSrc: Image | None, fA: Complex, fB: Complex, fC: Complex, imgDst: Image | None = None,
    ) -> Image: ...
    VorbisWindow = ZXVorbisWindow
    def ZXMask(
        self, cimSrc: Image | None, cimPeaks: Image | None, imgMtx: Image | None, fRad: Number, fH: Number,
        cimDst: Image | None = None,
    ) -> Image: ...
    Mask = ZXMask
    @overload
    def ZXCrossCorrelationMaskWithDefocus(
        self, cimTarg: Image | None, cimRef: Image | None, nCX: Number, nCY: Number, fScaleX: Number, fScaleY: Number,
        f: Number, fRad: Number, eMode: Number, fMean: Number = ..., cimDst: Image | None = None,
    ) -> ZXCrossCorrelationMaskWithDefocusResult: ...
    @overload
    def ZXCrossCorrelationMaskWithDefocus(
        self, cimTarg: Image | None, cimRef: Image | None, nCX: Number, nCY: Number, fScaleX: Number, fScaleY: Number,
        f: Number, fRad: Number, eMode: Number, fMean: Ref | None, cimDst: Image | None = None,
    ) -> Image: ...
    CrossCorrelationMaskWithDefocus = ZXCrossCorrelationMaskWithDefocus
    def ZXExec(self, strCommandLine: Text) -> None: ...
    Exec = ZXExec
    def ZXExecWait(self, strCommandLine: Text) -> None: ...
    ExecWait = ZXExecWait
    def ZXShellExec(self, strCommandLine: Text) -> None: ...
    ShellExec = ZXShellExec
    def ZXTransposeXZ(self, imgSrc: Image | None, imgDst: Image | None = None) -> Image: ...
    TransposeXZ = ZXTransposeXZ
    def ZXTransposeYZ(self, imgSrc: Image | None, imgDst: Image | None = None) -> Image: ...
    TransposeYZ = ZXTransposeYZ
    def ZXWTFMulDLL(
        self, cimSrc: Image | None, lambda_: Number, step: Number, c20: Number, c22: Complex, c40: Number, c60: Number,
        c31: Complex, c33: Complex, c42: Complex, c44: Complex, c51: Complex, c53: Complex, c55: Complex, c62: Complex,
        c64: Complex, c66: Complex, c2s: Number, bdiv: Number, vib: Number, lEnvelope: Number, tilt: Complex,
        cimDst: Image | None = None,
    ) -> Image: ...
    WTFMulDLL = ZXWTFMulDLL
    def ZXGoldstain(self, imgSrc: Image | None, nMaxBoxSize: Number) -> Image: ...
    Goldstain = ZXGoldstain
    def ZXSetZentrixHandler(self, hander: object, tag: Tags | None) -> None: ...
    SetZentrixHandler = ZXSetZentrixHandler
    def ZXZentrixPanelUpdate(self) -> None: ...
    ZentrixPanelUpdate = ZXZentrixPanelUpdate
    def ZXImageShifterForSemper(
        self, cimSrc: Image | None, nCX: Number, nCY: Number, fShiftX: Number, fShiftY: Number, fSign: Number,
        cimDst: Image | None = None,
    ) -> Image: ...
    ImageShifterForSemper = ZXImageShifterForSemper
    def ZXIsPaletteOpen(self) -> int: ...
    IsPaletteOpen = ZXIsPaletteOpen
    def ZXIsWindowVisible(self) -> int: ...
    IsWindowVisible = ZXIsWindowVisible
