"""Numbers, texts and output parameters on their way to a script function and back."""

import fractions
import math
import os

import numpy as np
import pytest

import zentrix
from zentrix import Ref, ScriptError

POSITIVE = "bad numeric conversion: positive overflow"
NEGATIVE = "bad numeric conversion: negative overflow"
NO_NUMBER = "bad numeric conversion: overflow"
FITS = "Unknown data type."  # what ZXToDMDataType says of a number that it got


def outcome(call, *arguments):
    try:
        return call(*arguments)
    except ScriptError as refusal:
        return str(refusal)


@pytest.mark.parametrize(
    "value, expected",
    [
        (6, 2),
        (True, 6),
        (np.bool_(False), 9),
        (np.int8(6), 2),
        (np.uint64(6), 2),
        (6.9, 2),
        (-0.9, 9),
        (np.float32(6.5), 2),
        (fractions.Fraction(13, 2), 2),
        (2**31 - 1, FITS),
        (2147483647.5, FITS),
        (-(2**31), FITS),
        (2**31, POSITIVE),
        (-(2**31) - 1, NEGATIVE),
        (2**63 - 1, POSITIVE),
        (2**63, POSITIVE),
        (-(2**63) - 1, NEGATIVE),
        (10**400, POSITIVE),
        (-(10**400), NEGATIVE),
        (1e300, POSITIVE),
        (-math.inf, NEGATIVE),
        (math.nan, NO_NUMBER),
    ],
)
def test_a_long(zx, value, expected):
    assert outcome(zx.ZXToDMDataType, value) == expected


@pytest.mark.parametrize(
    "value", [0, True, 2**53, 2**63, 2**64, 5e-324, np.finfo(float).max, -math.inf, np.float32(0.1), np.longdouble(2)]
)
def test_a_double(zx, value):
    result = zx.ZXPolar(value, np.zeros((1, 1)), None)
    assert result.dtype == np.complex128 and result[0, 0].real == float(value)


@pytest.mark.parametrize(
    "value, expected",
    [
        (3.4028234e38, 0),
        (math.inf, 0),
        (1e39, POSITIVE),
        (-1e39, NEGATIVE),
        (2**63, 0),
        (10**39, POSITIVE),
    ],
)
def test_a_float(zx, value, expected):
    """As the radius of "TagGroupSetTagAsFloat"."""
    tags = {}
    answer = outcome(zx.call, "TagGroupSetTagAsFloat", tags, "t", value)
    assert tags == ({"t": np.float32(value)} if expected == 0 else {}) and answer == (expected or None)


@pytest.mark.parametrize("value", [0.5 - 2j, np.complex64(1j), np.complex128(1e300 - 1e-300j), 3, -0.5, np.float32(0.1)])
def test_a_complex_number(zx, value):
    result = zx.ZXHanningWindow(np.zeros((1, 1), complex), 0j, 1, value, None)  # (0 - 0) 1 + value
    assert result[0, 0] == complex(value)


def test_a_text_and_a_path(zx, tmp_path):
    """Names beyond ASCII, and bytes that are no UTF-8, reach the file."""
    for name in ("plain.raw", "Å µ 波.raw", os.fsdecode(b"\xff.raw")):
        path = tmp_path / name
        np.arange(3, dtype=np.int16).tofile(path)
        assert zx.ZXOpenImage(path, 3, 1, 1, 2).tolist() == zx.ZXOpenImage(str(path), 3, 1, 1, 2).tolist() == [[0, 1, 2]]
        folder = Ref(str(path))
        zx.ZXSelectImageFiles(folder, "", None, None, None)
        assert folder.value == os.path.join(tmp_path, "")
    assert outcome(zx.call, "OkDialog", "…") is None


def test_an_output_parameter(zx):
    image = np.float32([[5, 1]])
    x, start = Ref(), Ref("of another kind")
    assert zx.ZXMin(image, x, None, None) == 1.0 and x.value == 1  # None: no such output wanted
    assert isinstance(x.value, int) and repr(x) == "Ref(1)"
    assert zx.ZXMax(image, x, x, x) == 5.0 and x.value == 0
    assert zx.ZXMin(image, start, None, None) == 1.0 and start.value == 1  # as if it had held nothing
    with pytest.raises(TypeError):
        zx.ZXMin(image, Ref(Ref()), None, None)


def test_a_failed_call_leaves_all_as_it_was(zx):
    source, place, value = np.float32([[1, 2]]), np.float32([[3]]), Ref(7.5)
    kept = Ref(place)
    for call in (
        lambda: zx.ZXAbsArg(source.astype(np.complex64), kept, Ref()),
        lambda: zx.ZXGetCenterOfMass(source, value, Ref(0.0), -1.0, 3, 0.0),
        lambda: zx.ZXFTWindow(source, 0, place),
    ):
        with pytest.raises(ScriptError):
            call()
    assert kept.value is place and place.tolist() == [[3]] and value.value == 7.5


@pytest.mark.parametrize(
    "name, arguments, text",
    [
        ("ZXPadSize", (), "ZXPadSize cannot be called with (). Its prototype is:\n    long ZXPadSize(long n)"),
        ("ZXPadSize", (1j,), "ZXPadSize cannot be called with (complex number (0,1)). Its prototype is:\n"
                             "    long ZXPadSize(long n)"),
        ("ZXPadSize", ("1",), 'ZXPadSize cannot be called with (text "1"). Its prototype is:\n    long ZXPadSize(long n)'),
        ("ZXMedian", ([1.0],), "ZXMedian cannot be called with (tag list of 1). Its prototype is:\n"
                               "    double ZXMedian(ImageRef imgSrc)"),
        ("ZXMedian", (object(),), 'ZXMedian cannot be called with (script object "object"). Its prototype is:\n'
                                  "    double ZXMedian(ImageRef imgSrc)"),
        ("ZXSortNumberedName", (np.zeros(2),),
         'ZXSortNumberedName cannot be called with (image "array" (2, Real 8 Byte)). Its prototype is:\n'
         "    void ZXSortNumberedName(TagGroup tFiles)"),
        ("ZXSetZentrixHandler", ({}, object()),
         'ZXSetZentrixHandler cannot be called with (tag group of 0, script object "object"). Its prototype is:\n'
         "    void ZXSetZentrixHandler( ScriptObject hander, TagGroup tag )"),
        ("ZXMin", (np.zeros(2), 5, None, None),
         'ZXMin cannot be called with (image "array" (2, Real 8 Byte), integer 5, null, null). Its prototype is:\n'
         "    double ZXMin(ImageRef imgSrc, long * nX, long * nY, long * nZ)"),
        ("ZXSortNumberedName", (None,), "Parameters are invalid."),
        ("ZXMedian", (None,), "Parameters are invalid."),
        ("ZXPolar", (np.zeros(2), 1, None),
         'ZXPolar cannot be called with (image "array" (2, Real 8 Byte), integer 1, null). Its prototypes are:\n'
         "    ComplexImagePtr ZXPolar(ImageRef imgRho, ImageRef imgTheta, ComplexImagePtr cimDst)\n"
         "    ComplexImagePtr ZXPolar(double fRho, ImageRef imgTheta, ComplexImagePtr cimDst)"),
        ("ZXNone", (), 'There is no script function "ZXNone".'),
    ],
)  # fmt: skip
def test_a_wrong_call_is_told_what_there_is(zx, name, arguments, text):
    assert outcome(zx.call, name, *arguments) == text


@pytest.mark.parametrize("value", [b"text", bytearray(2), memoryview(b"ab")])
def test_bytes_are_refused(zx, value):
    with pytest.raises(TypeError, match="^Bytes are no script value"):
        zx.ZXExec(value)


def test_an_error_is_a_runtime_error_of_the_package(zx):
    assert issubclass(ScriptError, RuntimeError) and zentrix.ScriptError is ScriptError
    assert f"{ScriptError.__module__}.{ScriptError.__name__}" == "zentrix.ScriptError"
