"""One call of every script function, for tests that go through all of them."""

import numpy as np

from zentrix import Ref

_random = np.random.default_rng(3)


def real(*shape, dtype=np.float32):
    return _random.uniform(0.5, 9, shape).astype(dtype)


def wave(*shape, dtype=np.complex64):
    return (_random.normal(size=shape) + 1j * _random.normal(size=shape)).astype(dtype)


def refs(count):
    return [Ref() for _ in range(count)]


def coefficients():
    return [0.01, 0.1, 2.0, 1 + 1j, 3.0, 1.0, *[0.5 - 1j] * 10, 0.1, 0.1, 0.1, 1, 0j]


class Handler:
    def OnChange(self):
        pass

    def OnBad(self):
        return 1 / 0


#: (function, arguments, counter); no counter where the function is not timed. In the order of registration.
CALLS = [
    ("ZXSetUseSIMD", lambda: [1], "SetUseSIMDDM"),
    ("ZXPadSize", lambda: [100], None),
    ("ZXToDMDataType", lambda: [6], None),
    ("ZXSetNumThreads", lambda: [2], "SetNumThreadsDM"),
    ("ZXGetNumThreads", lambda: [], "GetNumThreadsDM"),
    ("ZXGetMaxThreads", lambda: [], "GetMaxThreadsDM"),
    ("ZXGetSpecialDirectory", lambda: [40, 0], None),
    ("ZXSelectImageFiles", lambda: [Ref("/"), "", *refs(3)], "SelectImageFilesDM"),
    ("ZXSelectImageFiles", lambda: [Ref("/"), "", *refs(3), "owner"], "SelectImageFilesOwnedDM"),
    ("ZXOpenImage", lambda: [__file__, 3, 1, 1, 2], "OpenImageDM"),  # of another length: refused
    ("ZXPolar", lambda: [real(5, 6), real(5, 6), None], "Polar1DM"),
    ("ZXPolar", lambda: [2.0, real(5, 6), None], "Polar2DM"),
    ("ZXAbsArg", lambda: [wave(5, 6), Ref(real(5, 6)), Ref()], "AbsArgDM"),
    ("ZXAbs", lambda: [wave(5, 6), real(5, 6)], "AbsDM"),
    ("ZXExp2", lambda: [real(5, 6), real(5, 6)], "Exp2DM"),
    ("ZXLog2", lambda: [real(5, 6), real(5, 6)], "Log2DM"),
    ("ZXPow", lambda: [real(5, 6), real(5, 6), real(5, 6)], "PowDM"),
    ("ZXCArg", lambda: [wave(5, 6), wave(5, 6)], "CArgDM"),
    ("ZXNorm", lambda: [wave(5, 6), 2.0, real(5, 6)], "CNormDM"),
    ("ZXMovingAverage", lambda: [real(9, 8), 2, real(9, 8)], "MovingAverageDM"),
    ("ZXMovingAverage2", lambda: [real(9, 8), 2, Ref(real(9, 8)), Ref(real(9, 8))], "MovingAverageDM2"),
    ("ZXMovingAverageX", lambda: [real(9, 8), 2, real(9, 8)], "MovingAverageXDM"),
    ("ZXMovingAverageY", lambda: [wave(9, 8), 2, wave(9, 8)], "MovingAverageYDM"),
    ("ZXMovingAverageZ", lambda: [real(7, 3, 4), 2, real(7, 3, 4)], "MovingAverageZDM"),
    ("ZXGaussianBlur", lambda: [real(9, 8), 1.5, 3, real(9, 8)], "GaussianBlurDM"),
    ("ZXMaximumFilter", lambda: [real(9, 8), 2, real(9, 8)], "MaximumFilterDM"),
    ("ZXMinimumFilter", lambda: [real(9, 8), 2, real(9, 8)], "MinimumFilterDM"),
    ("ZXMedianFilter", lambda: [real(9, 8), 2, real(9, 8), 1], "MedianFilterDM2"),
    ("ZXMedianFilter", lambda: [real(9, 8), 1, real(9, 8)], "MedianFilterDM2"),
    ("ZXNthElement", lambda: [real(9, 8), 20], "NthElementDM"),
    ("ZXMedian", lambda: [real(9, 8, dtype=np.int16)], "MedianDM"),
    ("ZXMedianZ", lambda: [real(5, 4, 3), None], "MedianZDM"),
    ("ZXSurvey", lambda: [real(9, 8), *refs(5)], "SurveyDM"),
    ("ZXSurvey", lambda: [real(9, 8), *refs(4)], "SurveyDM"),
    ("ZXSurveyDifference", lambda: [real(9, 8), real(9, 8), *refs(7)], "SurveyDifferenceDM"),
    ("ZXMinMaxStable", lambda: [real(9, 8), *refs(8)], "MinMaxStableDM"),
    ("ZXMinMax", lambda: [real(9, 8), *refs(8)], "MinMaxDM"),
    ("ZXMin", lambda: [real(9, 8), *refs(3)], "MinDM"),
    ("ZXMax", lambda: [real(9, 8), *refs(3)], "MaxDM"),
    ("ZXRadialSurvey", lambda: [real(9, 8), 4, 4, 1.0, 1.0], "RadialSurveyDM"),
    ("ZXWeight", lambda: [real(9, 8), real(1, 7), 4, 4, 1.0, 1.0, 1, real(9, 8)], "WeightDM"),
    ("ZXGetCenterOfMass", lambda: [real(9, 8), Ref(4.0), Ref(4.0), 3.0, 5, 0.0], "GetCenterOfMassDM"),
    ("ZXSortNumberedName", lambda: [["b10", "b9"]], "SortNumberedNameDM"),
    ("ZXFTWindow", lambda: [real(9, 8), 2, real(9, 8)], "FTWindowDM"),
    ("ZXHanningWindow", lambda: [real(9, 8), 1.0, 2.0, 3.0, real(9, 8)], "HanningWindowDM"),
    ("ZXHanningWindow", lambda: [wave(9, 8), 1j, 2j, 3j, wave(9, 8)], "HanningWindowComplexDM"),
    ("ZXSineWindow", lambda: [real(9, 8), 1.0, 2.0, 3.0, real(9, 8)], "SineWindowDM"),
    ("ZXSineWindow", lambda: [wave(9, 8), 1j, 2j, 3j, wave(9, 8)], "SineWindowComplexDM"),
    ("ZXVorbisWindow", lambda: [real(9, 8), 1.0, 2.0, 3.0, real(9, 8)], "VorbisWindowDM"),
    ("ZXVorbisWindow", lambda: [wave(9, 8), 1j, 2j, 3j, wave(9, 8)], "VorbisWindowComplexDM"),
    ("ZXMask", lambda: [wave(9, 8), wave(1, 3) + 4, None, 2.0, 1.0, wave(9, 8)], "MaskDM"),
    (
        "ZXCrossCorrelationMaskWithDefocus",
        lambda: [wave(9, 8), wave(9, 8), 4, 4, 0.1, 0.1, 3.0, 0.3, 1, Ref(), wave(9, 8)],
        "CrossCorrelationMaskWithDefocusDM",
    ),
    ("ZXExec", lambda: ["true"], None),
    ("ZXExecWait", lambda: ["true"], None),
    ("ZXShellExec", lambda: ["/no/such/document"], "ShellExecDM"),
    ("ZXTransposeXZ", lambda: [real(3, 4, 5), real(5, 4, 3)], "TransposeXZDM"),
    ("ZXTransposeYZ", lambda: [real(3, 4, 5), real(4, 3, 5)], "TransposeYZDM"),
    ("ZXWTFMulDLL", lambda: [wave(9, 8), *coefficients(), wave(9, 8)], "WTFMulDM"),
    ("ZXGoldstain", lambda: [real(9, 8), 0], "GoldstainDM"),
    ("ZXSetZentrixHandler", lambda: [Handler(), {"ModA1": 1.0}], "SetZentrixHandlerDM"),
    ("ZXZentrixPanelUpdate", lambda: [], "ZentrixPanelUpdateDM"),
    ("ZXImageShifterForSemper", lambda: [wave(8, 8), 0, 0, 4.0, 4.0, 1.0, wave(8, 8)], "ImageShifterForSemperDM"),
    ("ZXIsPaletteOpen", lambda: [], "IsPaletteOpenDM"),
    ("ZXIsWindowVisible", lambda: [], "IsWindowVisibleDM"),
]
