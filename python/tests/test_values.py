"""Conversion of numbers, texts and output parameters."""

import fractions
import math
import os

import numpy as np
import pytest

from zentrix import Ref, ScriptError

POSITIVE = "bad numeric conversion: positive overflow"
NEGATIVE = "bad numeric conversion: negative overflow"
FITS = "Unknown data type."  # the answer of ZXToDMDataType to a number that fits


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
def test_long(zx, expected, values):
    assert [outcome(zx.ZXToDMDataType, value) for value in values] == [expected] * len(values)


@pytest.mark.parametrize(
    "value", [0, True, 2**53, 2**63, 2**64, 5e-324, np.finfo(float).max, -math.inf, np.float32(0.1), np.longdouble(2)]
)
def test_double(zx, value):
    result = zx.ZXPolar(value, np.zeros((1, 1)), None)
    assert result.dtype == np.complex128 and result[0, 0].real == float(value)


class Path:
    def __init__(self, result):
        self.result = result

    def __fspath__(self):
        return self.result()


def test_texts_and_paths(zx, tmp_path):
    """Names beyond ASCII, and bytes that are not UTF-8, reach the file."""
    for name in ("plain.raw", "Å µ 波.raw", os.fsdecode(b"\xff.raw")):
        path = tmp_path / name
        np.arange(3, dtype=np.int16).tofile(path)
        for form in (path, str(path), Path(lambda: os.fsencode(path))):  # noqa: B023
            assert zx.ZXOpenImage(form, 3, 1, 1, 2).tolist() == [[0, 1, 2]]
        folder = Ref(str(path))
        zx.ZXSelectImageFiles(folder, "", None, None, None)
        assert folder.value == os.path.join(tmp_path, "")


@pytest.mark.parametrize(
    "text, error, message",
    [
        (b"text", TypeError, "Bytes are no script value"),
        (memoryview(b"ab"), TypeError, "Bytes are no script value"),
        (Path(lambda: 1 / 0), ZeroDivisionError, "division by zero"),
        (Path(lambda: 3), TypeError, r"expected Path.__fspath__\(\) to return str or bytes"),
        (Path(lambda: b"a\0b"), ScriptError, "A text with a NUL character cannot be passed to a script."),
        ("true\0false", ScriptError, "A text with a NUL character cannot be passed to a script."),
    ],
)
def test_unsuitable_texts_are_refused(zx, text, error, message):
    with pytest.raises(error, match=f"^{message}"):
        zx.ZXExec(text)


def test_output_parameters(zx):
    image = np.float32([[5, 1]])
    x, start = Ref(), Ref("of another kind")
    assert zx.ZXMin(image, x, None, None) == 1.0 and x.value == 1  # None: output not needed
    assert isinstance(x.value, int) and repr(x) == "Ref(1)"
    assert zx.ZXMax(image, x, x, x) == 5.0 and x.value == 0
    assert zx.ZXMin(image, start, None, None) == 1.0 and start.value == 1  # the initial value is ignored
    with pytest.raises(TypeError):
        zx.ZXMin(image, Ref(Ref()), None, None)


def test_failed_call_changes_nothing(zx):
    place, value = np.float32([[3]]), Ref(7.5)
    reference = Ref(place)
    with pytest.raises(ScriptError):
        zx.ZXAbsArg(np.zeros((1, 2), np.complex64), reference, Ref())
    with pytest.raises(ScriptError):
        zx.ZXGetCenterOfMass(place, value, Ref(0.0), -1.0, 3, 0.0)
    assert reference.value is place and place.tolist() == [[3]] and value.value == 7.5


@pytest.mark.parametrize(
    "name, arguments, text",
    [
        ("TagGroupCountTags", (),
         "TagGroupCountTags cannot be called with (). Its prototype is:\n    long TagGroupCountTags( TagGroup )"),
        ("TagGroupCountTags", (5, 1j, "1", [1.0], {}, object(), np.zeros(2), None),
         'TagGroupCountTags cannot be called with (integer 5, complex number (0,1), text "1", tag list of 1, tag group '
         'of 0, script object "object", image "array" (2, Real 8 Byte), null). Its prototype is:\n'
         '    long TagGroupCountTags( TagGroup )'),
        ("ZXPadSize", ("5",),
         'ZXPadSize cannot be called with (text "5"). Its prototype is:\n    long ZXPadSize(long n)'),
        ("ZXSortNumberedName", (None,), "Parameters are invalid."),
        ("ZXNone", (), 'There is no script function "ZXNone".'),
    ],
)  # fmt: skip
def test_unsuitable_arguments_are_described(zx, name, arguments, text):
    assert outcome(zx.call, name, *arguments) == text
