#!/usr/bin/python3
"""Times script functions against NumPy, SciPy and, where they are installed, OpenCV and scikit-image.

    PYTHONPATH=build/release/python bench/compare_python.py [WIDTH]

Results are compared first, without the border. A time is the least of several runs in one thread, allocation of the
result included. With a ratio above 1 the script function is faster.
"""

import os

for _runtime in ("OMP", "OPENBLAS", "MKL"):
    os.environ[f"{_runtime}_NUM_THREADS"] = "1"

import sys
import time

import numpy as np
from scipy import ndimage, signal

import zentrix

try:
    import cv2

    cv2.setNumThreads(1)
except ImportError:
    cv2 = None
try:
    from skimage import filters, restoration
except ImportError:
    filters = restoration = None

WIDTH = int(sys.argv[1]) if len(sys.argv) > 1 else 1024
INSIDE = (slice(20, -20),) * 2
random = np.random.default_rng(1)
IMAGE = random.normal(size=(WIDTH, WIDTH)).astype(np.float32)
WHOLE = random.integers(0, 65536, (WIDTH, WIDTH)).astype(np.uint16)
WAVE = (random.normal(size=(WIDTH, WIDTH)) + 1j * random.normal(size=(WIDTH, WIDTH))).astype(np.complex64)
POSITIVE = np.abs(IMAGE)
FLIPPED = np.ascontiguousarray(WAVE[::-1])
HANN, SINE = signal.get_window("hann", WIDTH), signal.windows.cosine(WIDTH)
CURVE = random.uniform(1, 2, WIDTH).astype(np.float32)
VOLUME = random.normal(size=(15, WIDTH // 4, WIDTH // 4)).astype(np.float32)
Y, X = np.indices((WIDTH, WIDTH)) * (12 / WIDTH)
PHASE = np.angle(np.exp(1j * (4 * np.sin(X) * np.cos(Y) + X * Y))).astype(np.float32)


def fastest(call, seconds=0.4):
    """Returns the least time of one call [s] and its result."""
    least, result, end = np.inf, None, time.perf_counter() + seconds
    while time.perf_counter() < end or least == np.inf:
        start = time.perf_counter()
        result = call()
        least = min(least, time.perf_counter() - start)
    return least, result


def same(ours, theirs, tolerance):
    ours, theirs = np.asarray(ours), np.asarray(theirs)
    if ours.ndim == 2:
        ours, theirs = ours[INSIDE], theirs[INSIDE]
    return np.abs(ours - theirs).max() <= tolerance * np.abs(theirs).max()


def survey(zx):
    refs = [zentrix.Ref() for _ in range(5)]
    zx.ZXSurvey(IMAGE, *refs)
    return [one.value for one in refs]


def numpy_survey():
    wide = IMAGE.astype(np.float64)
    return wide.min(), wide.max(), wide.sum(), (wide * wide).sum(), np.abs(wide).sum()


def centre_of_mass(zx):
    x, y = zentrix.Ref(0.0), zentrix.Ref(0.0)
    zx.ZXGetCenterOfMass(POSITIVE, x, y, np.inf, 1, 0.0)
    return y.value, x.value


def extremes(zx):
    refs = [zentrix.Ref() for _ in range(8)]
    zx.ZXMinMaxStable(IMAGE, *refs)
    return [one.value for one in refs]


def numpy_extremes():
    found = []
    for index in (IMAGE.argmin(), IMAGE.argmax()):
        y, x = np.unravel_index(index, IMAGE.shape)
        found += [x, y, 0, IMAGE[y, x]]
    return found


def survey_difference(zx):
    refs = [zentrix.Ref() for _ in range(7)]
    zx.ZXSurveyDifference(IMAGE, POSITIVE, *refs)
    return [one.value for one in refs]


def numpy_survey_difference():
    one, two = IMAGE.astype(np.float64), POSITIVE.astype(np.float64)
    d = one - two
    return [one.sum(), (one**2).sum(), two.sum(), (two**2).sum(), d.sum(), (d**2).sum(), np.abs(d).sum()]


def radii():
    rows, columns = np.indices(IMAGE.shape)
    return np.hypot(columns - WIDTH // 2, rows - WIDTH // 2)


def numpy_rings():
    radius = (radii() + 0.5).astype(int).ravel()
    return np.bincount(radius, POSITIVE.ravel()) / np.maximum(np.bincount(radius), 1)


def lattice_mask():
    """Discs of radius 4 with a soft rim of 2, every 16 pixels from the centre."""
    off = [(place - WIDTH // 2 + 8) % 16 - 8 for place in np.indices(WAVE.shape)]
    return (1 - np.sin(np.pi / 4 * np.clip(np.hypot(*off) - 4, -2, 2))) / 2


def numpy_correlation():
    cross = WAVE * FLIPPED.conj()
    radius = radii() / WIDTH
    return np.where(radius <= 0.25, cross / np.abs(cross) * np.exp(1j * np.pi * 50 * radius**2), 0)


def with_offset_of(reference, unwrapped):
    return unwrapped - unwrapped[0, 0] + reference[0, 0]


def comparisons(zx):
    """Yields (name, our call, tolerance, {name of another library: its call})."""
    yield "box mean, radius 5", lambda: zx.ZXMovingAverage(IMAGE, 5, None), 1e-4, {
        "scipy": lambda: ndimage.uniform_filter(IMAGE, 11),
        "cv2": cv2 and (lambda: cv2.blur(IMAGE, (11, 11))),
    }
    yield "gaussian, sigma 2", lambda: zx.ZXGaussianBlur(IMAGE, 2.0, 4, None), 1e-5, {
        "scipy": lambda: ndimage.gaussian_filter(IMAGE, 2.0, truncate=4),
        "cv2": cv2 and (lambda: cv2.GaussianBlur(IMAGE, (17, 17), 2.0)),
        "skimage": filters and (lambda: filters.gaussian(IMAGE, 2.0, truncate=4)),
    }
    for radius in (1, 2, 5):
        size = 2 * radius + 1
        yield f"median, radius {radius}", lambda r=radius: zx.ZXMedianFilter(IMAGE, r, None), 0, {
            "scipy": lambda s=size: ndimage.median_filter(IMAGE, s),
            "cv2": cv2 and size <= 5 and (lambda s=size: cv2.medianBlur(IMAGE, s)),
        }
    yield "maximum, radius 5", lambda: zx.ZXMaximumFilter(IMAGE, 5, None), 0, {
        "scipy": lambda: ndimage.maximum_filter(IMAGE, 11),
        "cv2": cv2 and (lambda: cv2.dilate(IMAGE, np.ones((11, 11)))),
    }
    yield "maximum, radius 5, uint16", lambda: zx.ZXMaximumFilter(WHOLE, 5, None), 0, {
        "scipy": lambda: ndimage.maximum_filter(WHOLE, 11),
        "cv2": cv2 and (lambda: cv2.dilate(WHOLE, np.ones((11, 11)))),
    }
    yield "median of all", lambda: zx.ZXMedian(IMAGE), 1e-6, {"numpy": lambda: np.median(IMAGE.astype(np.float64))}
    yield "median along z, 15 planes", lambda: zx.ZXMedianZ(VOLUME, None), 0, {"numpy": lambda: np.median(VOLUME, axis=0)}
    yield "survey", lambda: survey(zx), 1e-9, {"numpy": numpy_survey}
    yield "survey of a difference", lambda: survey_difference(zx), 1e-9, {"numpy": numpy_survey_difference}
    yield "extremes and their places", lambda: extremes(zx), 0, {"numpy": numpy_extremes}
    yield "centre of mass", lambda: centre_of_mass(zx), 1e-4, {"scipy": lambda: ndimage.center_of_mass(POSITIVE)}
    half = WIDTH // 2
    yield "rotational average", lambda: zx.ZXRadialSurvey(POSITIVE, half, half, 1.0, 1.0), 1e-6, {"numpy": numpy_rings}
    yield "weight by a curve", lambda: zx.ZXWeight(IMAGE, CURVE[None], half, half, 1.0, 1.0, 1, None), 1e-6, {
        "numpy": lambda: IMAGE * np.interp(radii(), np.arange(WIDTH), CURVE)
    }
    matrix = np.float64([[16, 0], [0, 16]])
    yield "bragg mask", lambda: zx.ZXMask(WAVE, None, matrix, 4.0, 2.0, None), 1e-6, {
        "numpy": lambda: WAVE * lattice_mask()
    }
    yield "correlation mask", lambda: zx.ZXCrossCorrelationMaskWithDefocus(
        WAVE, FLIPPED, half, half, 1 / WIDTH, 1 / WIDTH, 50.0, 0.25, 1, zentrix.Ref(), None
    ), 1e-5, {"numpy": numpy_correlation}
    yield "transpose x, z", lambda: zx.ZXTransposeXZ(VOLUME, None), 0, {
        "numpy": lambda: np.ascontiguousarray(VOLUME.transpose())
    }
    yield "modulus", lambda: zx.ZXAbs(WAVE, None), 1e-6, {"numpy": lambda: np.abs(WAVE)}
    yield "exp2", lambda: zx.ZXExp2(IMAGE, None), 1e-6, {"numpy": lambda: np.exp2(IMAGE)}
    yield "window", lambda: zx.ZXFTWindow(IMAGE, 0, None), 1e-6, {
        "numpy": lambda: IMAGE * np.outer(*[signal.get_window("hann", WIDTH).astype(np.float32)] * 2)
    }
    for name, function, shape in (
        ("hann", zx.ZXHanningWindow, HANN),
        ("sine", zx.ZXSineWindow, SINE),
        ("vorbis", zx.ZXVorbisWindow, np.sin(np.pi / 2 * SINE**2)),
    ):
        yield f"{name} window, offsets", lambda f=function: f(IMAGE, 1.0, 2.0, 3.0, None), 1e-6, {
            "numpy": lambda w=shape: (IMAGE - 1) * np.outer(w, w) * 2 + 3
        }
    yield "unwrap", lambda: zx.ZXGoldstain(PHASE, 0), 1e-5, {
        "skimage": restoration and (lambda: with_offset_of(PHASE, restoration.unwrap_phase(PHASE)))
    }


def main():
    zx = zentrix.load()
    print(f"{WIDTH} x {WIDTH}, one thread\n{'':28}{'ours [ms]':>12}   others [ms] (ratio)")
    failed = False
    for name, ours, tolerance, others in comparisons(zx):
        our_time, our_result = fastest(ours)
        line = f"{name:28}{our_time * 1e3:12.2f}"
        for other, call in others.items():
            if not call:
                continue
            other_time, other_result = fastest(call)
            agrees = same(our_result, other_result, tolerance)
            failed = failed or not agrees
            line += f"   {other} {other_time * 1e3:.2f} ({other_time / our_time:.1f})" + ("" if agrees else " DIFFERS")
        print(line, flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
