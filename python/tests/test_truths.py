"""Results of the script functions against NumPy and SciPy, wherever both define the same thing."""

import numpy as np
import pytest
from scipy import ndimage, signal

from zentrix import Ref

random = np.random.default_rng(7)
F4 = random.normal(size=(37, 41)).astype(np.float32)
F8 = random.normal(size=(37, 41))
POSITIVE = np.abs(F8) + 0.1
WAVE = F8 + 1j * random.normal(size=F8.shape)
VOLUME = random.normal(size=(9, 11, 13))
WHOLE = random.integers(-50, 50, (37, 41)).astype(np.int16)
RADIUS = 3
WIDTH = 2 * RADIUS + 1
SHIFTED = (slice(RADIUS, -RADIUS),) * 2  # where a window lies inside the image


def outputs(call, source, count):
    refs = [Ref() for _ in range(count)]
    call(source, *refs)
    return [one.value for one in refs]


def clipped_mean(image, axes):
    """Mean over the part of the window that lies inside."""
    sums, counts = image, np.ones(image.shape)
    for axis in axes:
        ones = np.ones(WIDTH)
        sums = ndimage.convolve1d(sums, ones, axis, mode="constant")
        counts = ndimage.convolve1d(counts, ones, axis, mode="constant")
    return sums / counts


def renormalised_gaussian(image, sigma, order):
    """Cut off at order * sigma; what falls outside the image takes no weight."""
    reach = int(np.ceil(order * sigma))
    taps = np.exp(-0.5 * (np.arange(-reach, reach + 1) / sigma) ** 2)
    for axis in (1, 0):
        weights = ndimage.convolve1d(np.ones(image.shape), taps, axis, mode="constant")
        image = ndimage.convolve1d(image, taps, axis, mode="constant") / weights
    return image


def clipped_median(image):
    """Median of the part of the window that lies inside."""
    padded = np.pad(image, RADIUS, constant_values=np.nan)
    return np.nanmedian(np.lib.stride_tricks.sliding_window_view(padded, (WIDTH, WIDTH)), axis=(2, 3))


def window_image(name, **more):
    """A window of SciPy along both axes of F8."""
    return np.multiply.outer(*(signal.get_window(name, size, **more) for size in F8.shape))


def sampled(function, shape=F8.shape):
    return np.multiply.outer(*(function((np.arange(size) + 0.5) / size) for size in shape))


def rings(image, x, y):
    rows, columns = np.indices(image.shape)
    radius = np.floor(np.hypot(columns - x, rows - y) + 0.5).astype(int).ravel()
    counts = np.bincount(radius)
    return np.bincount(radius, image.ravel()) / np.maximum(counts, 1)


def places(image):
    """Place x, y, z and value of the smallest and the greatest element."""
    found = []
    for index in (image.argmin(), image.argmax()):
        y, x = np.unravel_index(index, image.shape)
        found += [x, y, 0, image.flat[index]]
    return found


def smooth_phase():
    y, x = np.indices((48, 64)) / 10
    return (3 * np.sin(x) * np.cos(y) + x * y).astype(np.float32)


def wrapped(phase):
    return np.angle(np.exp(1j * phase)).astype(np.float32)


def without_mean(phase):
    return phase - phase.mean(dtype=np.float64)


def centre_of_mass(zx):
    x, y = Ref(20.0), Ref(18.0)
    zx.ZXGetCenterOfMass(POSITIVE, x, y, np.inf, 5, 0.0)
    return y.value, x.value


def checkerboard(image):
    return (-1.0) ** np.indices(image.shape).sum(0)


def lattice_mask():
    """Discs of radius 2 with a rim of 1 about every fourth pixel from the centre."""
    rows, columns = np.indices(WAVE.shape)
    off = [(place - size // 2 + 2) % 4 - 2 for place, size in ((rows, WAVE.shape[0]), (columns, WAVE.shape[1]))]
    distance = np.hypot(*off)
    return np.where(distance <= 0.5, 1, np.where(distance >= 1.5, 0, (1 - np.sin(np.pi * (distance - 1))) / 2))


CURVE = random.uniform(1, 2, 12)
FTWINDOWS = [
    ("hann", {}),
    ("hamming", {}),
    ("blackman", {}),
    (("tukey", 0.5), {}),
    (("kaiser", 8.6), {}),
    ("flattop", {}),
    ("blackmanharris", {}),
    ("nuttall", {}),
]

#: (name, what the library gives, the truth, relative tolerance; 0: the same values)
COMPARISONS = [
    ("mean", lambda zx: zx.ZXMovingAverage(F8, RADIUS, None), lambda: clipped_mean(F8, (0, 1)), 1e-12),
    ("mean float", lambda zx: zx.ZXMovingAverage(F4, RADIUS, None), lambda: clipped_mean(F4 * 1.0, (0, 1)), 2e-6),
    ("mean wave", lambda zx: zx.ZXMovingAverage(WAVE, RADIUS, None), lambda: clipped_mean(WAVE, (0, 1)), 1e-12),
    ("mean volume", lambda zx: zx.ZXMovingAverage(VOLUME, RADIUS, None), lambda: clipped_mean(VOLUME, (0, 1, 2)), 1e-12),
    ("mean x", lambda zx: zx.ZXMovingAverageX(F8, RADIUS, None), lambda: clipped_mean(F8, (1,)), 1e-12),
    ("mean y", lambda zx: zx.ZXMovingAverageY(F8, RADIUS, None), lambda: clipped_mean(F8, (0,)), 1e-12),
    ("mean z", lambda zx: zx.ZXMovingAverageZ(VOLUME, RADIUS, None), lambda: clipped_mean(VOLUME, (0,)), 1e-12),
    ("uniform", lambda zx: zx.ZXMovingAverage(F8, RADIUS, None)[SHIFTED],
     lambda: ndimage.uniform_filter(F8, WIDTH)[SHIFTED], 1e-12),
    ("mean, squares", lambda zx: outputs(lambda s, *r: zx.ZXMovingAverage2(s, RADIUS, *r), F8, 2),
     lambda: [clipped_mean(F8, (0, 1)), clipped_mean(F8**2, (0, 1))], 1e-12),
    ("gaussian", lambda zx: zx.ZXGaussianBlur(F8, 2.0, 4, None), lambda: renormalised_gaussian(F8, 2.0, 4), 1e-12),
    ("gaussian float", lambda zx: zx.ZXGaussianBlur(F4, 1.5, 4, None), lambda: renormalised_gaussian(F4 * 1.0, 1.5, 4), 2e-6),
    ("gaussian inside", lambda zx: zx.ZXGaussianBlur(F8, 1.0, 4, None)[4:-4, 4:-4],
     lambda: ndimage.gaussian_filter(F8, 1.0, truncate=4)[4:-4, 4:-4], 1e-12),
    ("maximum", lambda zx: zx.ZXMaximumFilter(F4, RADIUS, None),
     lambda: ndimage.maximum_filter(F4, WIDTH, mode="constant", cval=-np.inf), 0),
    ("minimum", lambda zx: zx.ZXMinimumFilter(WHOLE, RADIUS, None),
     lambda: ndimage.minimum_filter(WHOLE, WIDTH, mode="constant", cval=32767), 0),
    ("median", lambda zx: zx.ZXMedianFilter(F4, RADIUS, None), lambda: clipped_median(F4), 0),
    ("median zeros", lambda zx: zx.ZXMedianFilter(F8, RADIUS, None, 1),
     lambda: ndimage.median_filter(F8, WIDTH, mode="constant"), 0),
    ("median whole", lambda zx: zx.ZXMedianFilter(WHOLE, RADIUS, None, 0), lambda: clipped_median(WHOLE.astype(np.float32)), 0),
    ("median z", lambda zx: zx.ZXMedianZ(VOLUME, None), lambda: np.median(VOLUME, axis=0), 0),
    ("median of all", lambda zx: zx.ZXMedian(F8[:, :40]), lambda: np.median(F8[:, :40]), 0),
    ("nth", lambda zx: [zx.ZXNthElement(F4, n) for n in (0, 17, 1516)], lambda: np.sort(F4, None)[[0, 17, 1516]], 0),
    ("xz", lambda zx: zx.ZXTransposeXZ(VOLUME, None), lambda: np.swapaxes(VOLUME, 0, 2), 0),
    ("yz", lambda zx: zx.ZXTransposeYZ(VOLUME, None), lambda: np.swapaxes(VOLUME, 0, 1), 0),
    ("survey", lambda zx: outputs(zx.ZXSurvey, F8, 5),
     lambda: [F8.min(), F8.max(), F8.sum(), (F8**2).sum(), np.abs(F8).sum()], 1e-12),
    ("difference", lambda zx: outputs(lambda s, *r: zx.ZXSurveyDifference(s, POSITIVE, *r), F8, 7),
     lambda: [F8.sum(), (F8**2).sum(), POSITIVE.sum(), (POSITIVE**2).sum(), (F8 - POSITIVE).sum(),
              ((F8 - POSITIVE) ** 2).sum(), np.abs(F8 - POSITIVE).sum()], 1e-12),
    ("extremes", lambda zx: outputs(zx.ZXMinMax, WHOLE, 8), lambda: places(WHOLE), 0),
    ("rings", lambda zx: zx.ZXRadialSurvey(F8, 20, 18, 1.0, 1.0), lambda: rings(F8, 20, 18), 1e-12),
    ("weight", lambda zx: zx.ZXWeight(F8, CURVE[None], 20, 18, 1.0, 1.0, 1, None),
     lambda: F8 * np.interp(np.hypot(*(np.indices(F8.shape) - [[[18]], [[20]]])), np.arange(12), CURVE), 1e-12),
    ("centre", centre_of_mass, lambda: ndimage.center_of_mass(POSITIVE), 1e-12),
    *((f"window {mode}", lambda zx, mode=mode: zx.ZXFTWindow(F8, mode, None),
       lambda name=name: F8 * window_image(name), 1e-8) for mode, (name, _) in enumerate(FTWINDOWS)),
    ("hann", lambda zx: zx.ZXHanningWindow(F8, 1.0, 2.0, 3.0, None), lambda: (F8 - 1) * window_image("hann") * 2 + 3, 1e-12),
    ("sine", lambda zx: zx.ZXSineWindow(WAVE, 1j, 2j, 3j, None),
     lambda: (WAVE - 1j) * np.multiply.outer(*(signal.windows.cosine(size) for size in WAVE.shape)) * 2j + 3j, 1e-12),
    ("vorbis", lambda zx: zx.ZXVorbisWindow(F8, 0.0, 1.0, 0.0, None),
     lambda: F8 * sampled(lambda t: np.sin(np.pi / 2 * np.sin(np.pi * t) ** 2)), 1e-12),
    ("polar", lambda zx: zx.ZXPolar(POSITIVE, F8, None), lambda: POSITIVE * np.exp(1j * F8), 1e-12),
    ("parts", lambda zx: outputs(zx.ZXAbsArg, WAVE, 2), lambda: [np.abs(WAVE), np.angle(WAVE)], 1e-12),
    ("parts float", lambda zx: outputs(zx.ZXAbsArg, WAVE.astype(np.complex64), 2),
     lambda: [np.abs(WAVE.astype(np.complex64)), np.angle(WAVE.astype(np.complex64))], 2e-7),
    ("modulus", lambda zx: zx.ZXAbs(WAVE, None), lambda: np.abs(WAVE), 1e-12),
    ("unit", lambda zx: zx.ZXCArg(WAVE, None), lambda: WAVE / np.abs(WAVE), 1e-12),
    ("exp2", lambda zx: zx.ZXExp2(F4, None), lambda: np.exp2(F4 * 1.0), 2e-7),
    ("log2", lambda zx: zx.ZXLog2(POSITIVE, None), lambda: np.log2(POSITIVE), 1e-12),
    ("pow", lambda zx: zx.ZXPow(POSITIVE, F8, None), lambda: POSITIVE**F8, 1e-12),
    ("norm", lambda zx: zx.ZXNorm(WAVE, 0.25, np.empty(WAVE.shape)), lambda: np.abs(WAVE) ** 2 / 4, 1e-12),
    ("unwrap", lambda zx: zx.ZXGoldstain(wrapped(smooth_phase()), 0),
     lambda: smooth_phase() - smooth_phase()[0, 0] + wrapped(smooth_phase())[0, 0], 1e-5),
    ("unwrap as a peer", lambda zx: without_mean(zx.ZXGoldstain(wrapped(smooth_phase()), 0)),
     lambda: without_mean(pytest.importorskip("skimage.restoration").unwrap_phase(wrapped(smooth_phase()))), 1e-5),
    ("shifter", lambda zx: zx.ZXImageShifterForSemper(WAVE[:36, :40].copy(), 0, 0, 20.0, 18.0, 1.0, None),
     lambda: WAVE[:36, :40].conj() * checkerboard(WAVE[:36, :40]), 0),
    ("mask", lambda zx: zx.ZXMask(WAVE, None, np.float64([[4, 0], [0, 4]]), 1.0, 0.5, None), lambda: WAVE * lattice_mask(), 1e-12),
    ("correlation", lambda zx: zx.ZXCrossCorrelationMaskWithDefocus(
        WAVE, F8 + 0j, 20, 18, 1.0, 1.0, 0.0, np.inf, 0, Ref(), None), lambda: WAVE * F8, 1e-12),
]  # fmt: skip


@pytest.mark.parametrize("simd", [0, 1])
@pytest.mark.parametrize("name, ours, truth, tolerance", COMPARISONS, ids=[row[0] for row in COMPARISONS])
def test_agrees(zx, simd, name, ours, truth, tolerance):
    zx.ZXSetUseSIMD(simd)
    found, expected = np.asarray(ours(zx)), np.asarray(truth())
    zx.ZXSetUseSIMD(1)
    assert found.shape == expected.shape
    assert np.abs(found - expected).max() <= tolerance * np.abs(expected).max()
