"""Script functions as attributes."""

import inspect
import pickle
import subprocess
import sys

import numpy as np
import pytest

import zentrix
from zentrix import Ref, ScriptError

IMAGE = np.float32([[1, -2, 3]])


def test_every_prototype_is_an_attribute_with_its_entry_in_the_reference(zx):
    for text in zx.functions():
        name = text.split("(")[0].split()[-1]
        function = getattr(zx, name)
        assert function is getattr(zx, name.removeprefix("ZX")) and name.removeprefix("ZX") in dir(zx)
        assert function.__name__ == name
        prototypes, _, entry = function.__doc__.partition("\n\n")
        assert text in prototypes.splitlines() and len(entry) > 100 and "```" not in entry
    zx.ZXSetNumThreads(1)
    assert zx.trace()["SetNumThreadsDM"][0] > 0


def test_functions_without_support_of_strides_refuse_them(zx):
    wave = np.ones((8, 16), np.complex64)[:, ::2]
    coefficients = [0.01, 0.1, 2.0, 1 + 1j, 3.0, 1.0, *[0.5 - 1j] * 10, 0.1, 0.1, 0.1, 1, 0j]
    for call in (
        lambda: zx.ZXWTFMulDLL(wave, *coefficients, None),
        lambda: zx.ZXGoldstain(wave.real, 0),
        lambda: zx.ZXImageShifterForSemper(wave, 0, 0, 4.0, 4.0, 1.0, None),
    ):
        with pytest.raises(ScriptError) as refusal:
            call()
        assert str(refusal.value) == "Parameters are invalid."
        assert "ascontiguousarray" in refusal.value.__notes__[0]


@pytest.mark.parametrize(
    "name, signature",
    [
        ("MedianFilter", "(imgSrc, nRad, imgDst=None, nUseZeroPadding=Ellipsis)"),
        ("Survey", "(imgSrc, fMin=None, fMax=None, fSum=None, fSqsum=None, fSumAbs=None)"),
        ("GetCenterOfMass", "(imgSrc, fX, fY, fRad, nCycles, fThreshold)"),
        ("IsPaletteOpen", "()"),
    ],
)
def test_signature(zx, name, signature):
    assert str(inspect.signature(getattr(zx, name))) == signature


def test_keywords_and_omitted_destinations(zx):
    plain, padded = zx.ZXMedianFilter(IMAGE, 1, None).tolist(), zx.ZXMedianFilter(IMAGE, 1, None, 1).tolist()
    assert plain != padded
    for expected, result in (
        (plain, zx.ZXMedianFilter(IMAGE, 1)),
        (plain, zx.MedianFilter(nRad=1, imgSrc=IMAGE)),
        (padded, zx.ZXMedianFilter(IMAGE, nRad=1, nUseZeroPadding=1)),
        (padded, zx.call("MedianFilter", IMAGE, 1, nUseZeroPadding=1)),
    ):
        assert result.tolist() == expected
    destination = np.empty_like(IMAGE)
    assert zx.ZXMedianFilter(IMAGE, 1, imgDst=destination) is destination
    assert (zx.Polar(fRho=2, imgTheta=IMAGE) == zx.Polar(2.0, IMAGE, None)).all()
    names = list(inspect.signature(zx.ZXWTFMulDLL).parameters)
    wave = zx.ZXWTFMulDLL(np.ones((4, 4), np.complex64), **dict.fromkeys(names[1:-1], 0) | {"lambda_": 1, "step": 1})
    assert (wave == 1).all()


def test_outputs_are_returned_unless_a_reference_is_given(zx):
    survey, spot = zx.ZXSurvey(IMAGE), np.zeros((16, 16))
    assert survey == (-2, 3, 2, 14, 6) and survey.fSumAbs == 6 and survey._fields[0] == "fMin"
    assert repr(zx.ZXMin(IMAGE)) == "ZXMinResult(result=-2.0, nX=1, nY=0, nZ=0)"
    assert pickle.loads(pickle.dumps(survey)) == survey and type(pickle.loads(pickle.dumps(survey))) is type(survey)
    spot[9:12, 4:7] = 5
    assert zx.ZXGetCenterOfMass(spot, 8, fY=8.0, fRad=5, nCycles=20, fThreshold=0) == (2, 5, 10)
    modulus = np.empty((1, 1), np.float32)
    parts = zx.ZXAbsArg(np.complex64([[3 + 4j]]), modulus)
    assert parts.imgRho is modulus and modulus == 5 and parts.imgTheta.shape == (1, 1)
    total = Ref()
    assert zx.ZXSurvey(IMAGE, fSum=total) is None and total.value == 2
    assert zx.ZXMin(IMAGE, None, None, None) == -2 == zx.ZXMin(IMAGE, nX=Ref())


@pytest.mark.parametrize(
    "use, error, text",
    [
        (lambda zx: zx.ZXMedianFilter(IMAGE), TypeError,
         "ZXMedianFilter() missing 1 required positional argument: 'nRad'"),
        (lambda zx: zx.ZXSelectImageFiles(), TypeError,
         "ZXSelectImageFiles() missing 2 required positional arguments: 'path' and 'strFilter'"),
        (lambda zx: zx.ZXMedianFilter(IMAGE, rad=3), TypeError,
         "ZXMedianFilter() got an unexpected keyword argument 'rad'. Did you mean 'nRad'?"),
        (lambda zx: zx.ZXMedianFilter(IMAGE, 1, imgSrc=IMAGE), TypeError,
         "ZXMedianFilter() got multiple values for argument 'imgSrc'"),
        (lambda zx: zx.ZXMedianFilter(IMAGE, 1, None, 1, 5), TypeError,
         "ZXMedianFilter() takes from 3 to 4 positional arguments but 5 were given"),
        (lambda zx: zx.ZXPadSize(1, 2), TypeError, "ZXPadSize() takes 1 positional argument but 2 were given"),
        (lambda zx: zx.call("TagGroupCountTags", tags={}), TypeError,
         "TagGroupCountTags() takes no keyword arguments: it is a function of the host."),
        (lambda zx: zx.Medianfilter, AttributeError,
         "The host has no attribute 'Medianfilter'. Did you mean ZXMedianFilter?"),
        (lambda zx: zentrix.corect, AttributeError, "module 'zentrix' has no attribute 'corect'. Did you mean correct?"),
        (lambda zx: zentrix.ZXMedianFiltr, AttributeError,
         "module 'zentrix' has no attribute 'ZXMedianFiltr'. Did you mean ZXMedianFilter?"),
        (lambda zx: zx.Min(IMAGE, "a"), TypeError, "ZXMin() takes a number as the initial nX, not 'a'."),
        (lambda zx: zx.call("MedianFiltr"), ScriptError,
         'There is no script function "MedianFiltr". Did you mean ZXMedianFilter?'),
        (lambda zx: zx.call("TagGroupCount", {}), ScriptError,
         'There is no script function "TagGroupCount". Did you mean TagGroupCountTags?'),
        (lambda zx: zx.call("OpenImage", "none"), ScriptError, "none: there is no such file"),  # the host's function
    ],
)  # fmt: skip
def test_mistakes_are_described(zx, use, error, text):
    with pytest.raises(error) as refusal:
        use(zx)
    assert str(refusal.value) == text


def test_note_lists_the_arguments_of_a_refused_call(zx):
    with pytest.raises(ScriptError, match=r"^Parameters are invalid\.$") as refusal:
        zx.ZXMedianFilter(IMAGE, -2)
    assert refusal.value.__notes__ == ["The arguments were imgSrc=<float32 (1, 3)>, nRad=-2, imgDst=None."]


RIGHT = """
zx.ZXMedianFilter(a, 1); zx.ZXMedianFilter(a, nRad=1, nUseZeroPadding=1); zx.MedianFilter(a, 1, None, 1)
least: float = zx.ZXSurvey(a).fMin; x: int = zx.ZXMin(a).nX; value: float = zx.ZXMin(a, Ref(), None, nZ=Ref())
zx.ZXSurvey(a, Ref(), Ref(), Ref(), Ref()); zx.ZXSurvey(a, fSum=Ref()); y: float = zx.ZXGetCenterOfMass(a, 1, 2, 3, 4, 5).fY
zx.ZXGetCenterOfMass(a, Ref(1), Ref(2), 5, 3, 0); zx.ZXAbsArg(a, imgTheta=a).imgRho; zx.Polar(fRho=2, imgTheta=a)
zentrix.correct(a, kv=Decimal(300), pixel=np.float32(0.02)).real; zentrix.unwrap(a, report=bool(x))
def lazily(array: Array) -> None: zentrix.correct(array, kv=300, pixel=1).compute()
"""
WRONG = [
    "zx.ZXMedianFilter(a)", "zx.ZXMedianFilter(a, rad=2)", "zx.ZXMedianFilter(a, '2')", "zx.ZXSurvey(a).least",
    "zx.ZXPadSize(1, 2)", "zx.ZXExp2([1, 2])", "zx.ZXMin(a, 'x')", "zx.Medianfilter(a, 1)", "zx.ZXMin(a, Ref()).nX",
    "zentrix.correct(a, pixel=1, kv='300')", "zentrix.correct(a, pixel=1, kv=300, Cs=1)",
]  # fmt: skip


def test_type_checker_accepts_right_use_and_finds_mistakes(tmp_path):
    pytest.importorskip("mypy")
    pytest.importorskip("dask")
    file = tmp_path / "use.py"
    start = "import numpy as np, zentrix\nfrom zentrix import Ref\nfrom decimal import Decimal\n"
    start += "from dask.array.core import Array\nzx, a = zentrix.load(), np.ones((4, 4))\n"
    first = (start + RIGHT.strip()).count("\n") + 2
    file.write_text(start + RIGHT.strip() + "\n" + "\n".join(WRONG))

    command = [sys.executable, "-m", "mypy", "--strict", "--no-error-summary", "--hide-error-context", file]
    environment = {"MYPYPATH": zentrix.__path__[0].rpartition("/")[0], "PATH": "", "MYPY_CACHE_DIR": str(tmp_path / "cache")}
    found = subprocess.run(command, capture_output=True, text=True, env=environment, check=False).stdout
    errors = {line.split(":")[1] for line in found.splitlines() if ": error:" in line}
    assert errors == {str(first + k) for k in range(len(WRONG))}, found
