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
FITS = "Unknown data type."  # what ZXToDMDataType says of a number that it got


def outcome(call, *arguments):
    try:
        return call(*arguments)
    except ScriptError as refusal:
        return str(refusal)


@pytest.mark.parametrize(
    "expected, values",
    [
        (2, [6, np.int8(6), np.uint64(6), np.float32(6.5), fractions.Fraction(13, 2)]),
        (6, [True]),
        (9, [np.bool_(False), -0.9]),
        (FITS, [2**31 - 1, -(2**31)]),
        (POSITIVE, [2**31, 2**63 - 1, 2**63, 10**400, 1e300]),
        (NEGATIVE, [-(2**31) - 1, -(2**63) - 1, -(10**400), -math.inf]),
        ("bad numeric conversion: overflow", [math.nan]),
    ],
)
def test_a_long(zx, expected, values):
    assert [outcome(zx.ZXToDMDataType, value) for value in values] == [expected] * len(values)


@pytest.mark.parametrize(
    "value", [0, True, 2**53, 2**63, 2**64, 5e-324, np.finfo(float).max, -math.inf, np.float32(0.1), np.longdouble(2)]
)
def test_a_double(zx, value):
    result = zx.ZXPolar(value, np.zeros((1, 1)), None)
    assert result.dtype == np.complex128 and result[0, 0].real == float(value)


@pytest.mark.parametrize("value, refused", [(math.inf, None), (2**63, None), (-1e39, NEGATIVE), (10**39, POSITIVE)])
def test_a_float(zx, value, refused):
    """As the value of "TagGroupSetTagAsFloat"."""
    tags = {}
    assert outcome(zx.call, "TagGroupSetTagAsFloat", tags, "t", value) == refused
    assert tags == ({} if refused else {"t": np.float32(value)})


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
        ("ZXPadSize", (5, 1j, "1", [1.0], {}, object(), np.zeros(2), None),
         'ZXPadSize cannot be called with (integer 5, complex number (0,1), text "1", tag list of 1, tag group of 0, '
         'script object "object", image "array" (2, Real 8 Byte), null). Its prototype is:\n    long ZXPadSize(long n)'),
        ("ZXSortNumberedName", (None,), "Parameters are invalid."),
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
