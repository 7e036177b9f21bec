"""Script functions as attributes."""

import numpy as np
import pytest

from zentrix import ScriptError


def test_every_prototype_is_an_attribute(zx):
    for text in zx.functions():
        name = text.split("(")[0].split()[-1]
        function = getattr(zx, name)
        assert function.__name__ == name and text in function.__doc__.splitlines()
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
