"""Results of script functions against the equivalent functions of SciPy and NumPy."""

import numpy as np
import pytest
from scipy import ndimage, signal

from zentrix import Ref

random = np.random.default_rng(7)
F8 = random.normal(size=(37, 41))
F4 = F8.astype(np.float32)
POSITIVE = np.abs(F8) + 0.1
WAVE = F8 + 1j * random.normal(size=F8.shape)
WHOLE = random.integers(-50, 50, (37, 41)).astype(np.int16)
RADIUS = 3
WIDTH = 2 * RADIUS + 1
INTERIOR = (slice(RADIUS, -RADIUS),) * 2  # where the window is completely inside the image
WINDOWS = ["hann", "hamming", "blackman", ("tukey", 0.5), ("kaiser", 8.6), "flattop", "blackmanharris", "nuttall"]


def window_image(window):
    """The product of a window along both axes of F8."""
    return np.multiply.outer(*(window(size) for size in F8.shape))


def smooth_phase():
    y, x = np.indices((48, 64)) / 10
    return np.angle(np.exp(1j * (3 * np.sin(x) * np.cos(y) + x * y))).astype(np.float32)


def centre_of_mass(zx):
    x, y = Ref(20.0), Ref(18.0)
    zx.ZXGetCenterOfMass(POSITIVE, x, y, np.inf, 5, 0.0)
    return y.value, x.value


#: (name, result, reference, relative tolerance; 0: equal values)
COMPARISONS = [
    ("mean", lambda zx: zx.ZXMovingAverage(F8, RADIUS, None)[INTERIOR],
     lambda: ndimage.uniform_filter(F8, WIDTH)[INTERIOR], 1e-12),
    ("gaussian", lambda zx: zx.ZXGaussianBlur(F8, 1.0, 4, None)[4:-4, 4:-4],
     lambda: ndimage.gaussian_filter(F8, 1.0, truncate=4)[4:-4, 4:-4], 1e-12),
    ("maximum", lambda zx: zx.ZXMaximumFilter(F4, RADIUS, None),
     lambda: ndimage.maximum_filter(F4, WIDTH, mode="constant", cval=-np.inf), 0),
    ("minimum", lambda zx: zx.ZXMinimumFilter(WHOLE, RADIUS, None),
     lambda: ndimage.minimum_filter(WHOLE, WIDTH, mode="constant", cval=32767), 0),
    ("median filter", lambda zx: zx.ZXMedianFilter(F8, RADIUS, None, 1),
     lambda: ndimage.median_filter(F8, WIDTH, mode="constant"), 0),
    ("centre", centre_of_mass, lambda: ndimage.center_of_mass(POSITIVE), 1e-12),
    *((f"window {mode}", lambda zx, mode=mode: zx.ZXFTWindow(F8, mode, None),
       lambda name=name: F8 * window_image(lambda size: signal.get_window(name, size)), 1e-8)
      for mode, name in enumerate(WINDOWS)),
    ("sine", lambda zx: zx.ZXSineWindow(WAVE, 1j, 2j, 3j, None),
     lambda: (WAVE - 1j) * window_image(signal.windows.cosine) * 2j + 3j, 1e-12),
    ("unwrap", lambda zx: zx.ZXGoldstain(smooth_phase(), 0), lambda: np.unwrap(np.unwrap(smooth_phase()), axis=0), 1e-5),
]  # fmt: skip


@pytest.mark.parametrize("name, result, reference, tolerance", COMPARISONS, ids=[row[0] for row in COMPARISONS])
def test_result_agrees_with_the_reference(zx, name, result, reference, tolerance):
    found, expected = np.asarray(result(zx)), np.asarray(reference())
    assert found.shape == expected.shape
    assert np.abs(found - expected).max() <= tolerance * np.abs(expected).max()
