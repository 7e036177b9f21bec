"""Every script function through the module."""

import copy

import numpy as np
import pytest
from script_calls import CALLS

from zentrix import Ref, ScriptError


def reports(zx, counter):
    return zx.trace().get(counter, (0, 0))[0]


def test_every_prototype_is_an_attribute_and_runs_its_own_function(zx):
    names = [text.split("(")[0].split()[-1] for text in zx.functions()]
    assert sorted(names) == sorted(name for name, _, _ in CALLS) and len(names) == 64
    for name, arguments, counter in CALLS:
        before = reports(zx, counter)
        try:
            getattr(zx, name)(*arguments())
        except ScriptError as refusal:
            assert name == "ZXOpenImage" and str(refusal) == "Invalid image size."
        assert counter is None or reports(zx, counter) == before + 1, name
    zx.ZXSetNumThreads(1)


def test_a_docstring_is_the_prototypes(zx):
    assert zx.ZXPadSize.__doc__ == "long ZXPadSize(long n)" and zx.ZXPadSize.__name__ == "ZXPadSize"
    assert [line.count(",") for line in zx.ZXSurvey.__doc__.splitlines()] == [5, 4]


def spread_out(array):
    """The same values in memory with gaps and backwards along every axis."""
    wide = np.full([3 * size for size in array.shape], 77, array.dtype)
    view = wide[tuple(slice(None, None, -3) for _ in array.shape)]
    view[...] = array
    return view


def values_of(value):
    """Images to the bit; numbers but for the last bits, as sums may be added up in another order."""
    if isinstance(value, Ref):
        return values_of(value.value)
    if isinstance(value, np.ndarray):
        return value.tobytes()
    return pytest.approx(value, rel=1e-12) if isinstance(value, float) else value


#: These know no strides.
CONTIGUOUS_ONLY = ("ZXWTFMulDLL", "ZXGoldstain", "ZXImageShifterForSemper")


def test_a_function_that_knows_no_strides_says_so(zx):
    for name, make, _ in CALLS:
        if name in CONTIGUOUS_ONLY:
            source, *others = make()
            with pytest.raises(ScriptError) as refusal:
                getattr(zx, name)(spread_out(source), *others)
            assert str(refusal.value) == "Parameters are invalid."
            assert "ascontiguousarray" in refusal.value.__notes__[0]


@pytest.mark.parametrize("simd", [0, 1])
def test_strides_change_no_result(zx, simd):
    """Every function on arrays with gaps, backwards and in column order gives what it gives on compact ones."""
    zx.ZXSetUseSIMD(simd)
    for name, make, _ in CALLS:
        given = make()
        if name in CONTIGUOUS_ONLY or not any(isinstance(one, np.ndarray) for one in given):
            continue
        outcomes = []
        for arrange in (np.ascontiguousarray, spread_out, np.asfortranarray):
            arguments = [arrange(one) if isinstance(one, np.ndarray) else copy.copy(one) for one in given]
            for one in arguments:
                if isinstance(one, Ref) and isinstance(one.value, np.ndarray):
                    one.value = arrange(one.value)
            answer = getattr(zx, name)(*arguments)
            outcomes.append([values_of(one) for one in [answer, *arguments]])
        assert outcomes[0] == outcomes[1], name
        assert outcomes[0] == outcomes[2], name
    zx.ZXSetUseSIMD(1)
