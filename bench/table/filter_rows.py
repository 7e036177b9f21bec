"""Smoothing and ranks."""

import numpy as np

from zentrix import Ref

from .images import DEPTH
from .peers import bottleneck, cv2, filters, ndimage
from .row import Row, Topic, copy, read

WHY_BOX = "Our sums have fixed bits: each is the one before it, plus a sample, minus a sample."
WHY_BLUR = (
    "Every tap is multiplied and added in a fixed order and in double precision; OpenCV adds symmetric samples first, "
    "which saves half of the multiplications, and keeps the precision of the elements."
)
WHY_SMALL = "We search each row for NaN and -0, on which the rule depends; in small windows that and the edges show."
WHY_CALL = (
    "A call takes about 13 microseconds even for 16 pixels, a call of OpenCV 1; that shows in small images of small "
    "integers."
)


def two_means(zx, images):
    mean, squares = Ref(images.to(np.float32)), Ref(images.room(np.float32))
    zx.ZXMovingAverage2(images.real, 5, mean, squares)
    return mean.value, squares.value


def scipy_two_means(images):
    squares = np.multiply(images.real, images.real, out=images.peer_to(np.float32, 1, images.width, images.width)[0])
    mean = ndimage.uniform_filter(images.real, 11, output=images.peer_to(np.float32))
    return mean, ndimage.uniform_filter(squares, 11, output=squares)


def opencv_two_means(images):
    squares = cv2.sqrBoxFilter(images.real, cv2.CV_32F, (11, 11))
    return cv2.blur(images.real, (11, 11), dst=images.peer_to(np.float32)), squares


def scipy_complex_mean(images):
    return ndimage.uniform_filter(images.wave, 11, output=images.peer_to(np.complex64))


def along(function, axis, size):
    """`function` of the library and the filter of SciPy along one axis."""
    return (
        lambda zx, d: getattr(zx, function)(d.real, 5, d.to(np.float32)),
        {"SciPy": lambda d: ndimage.uniform_filter1d(d.real, 11, axis=axis, output=d.peer_to(np.float32)),
         "OpenCV": lambda d: cv2.blur(d.real, size, dst=d.peer_to(np.float32))},
        copy(4, 4), 1e-4, 5, WHY_BOX,
    )  # fmt: skip


def volume_means(zx, images):
    return zx.ZXMovingAverageZ(images.volume, 2, images.to(np.float32, *images.volume.shape))[2:-2]


def scipy_volume_means(images):
    to = images.peer_to(np.float32, *images.volume.shape)
    return ndimage.uniform_filter1d(images.volume, 5, axis=0, output=to)[2:-2]


def blur(image, dtype, sigma, tolerance):
    taps, depth = 8 * sigma + 1, np.dtype(dtype).itemsize
    return (
        lambda zx, d: zx.ZXGaussianBlur(getattr(d, image), float(sigma), 4, d.to(dtype)),
        {"SciPy": lambda d: ndimage.gaussian_filter(getattr(d, image), sigma, truncate=4, output=d.peer_to(dtype)),
         "OpenCV": lambda d: cv2.GaussianBlur(getattr(d, image), (taps, taps), sigma, dst=d.peer_to(dtype)),
         "scikit-image": lambda d: filters.gaussian(getattr(d, image), sigma, truncate=4, output=d.peer_to(dtype))},
        copy(depth, depth), tolerance, 4 * sigma, WHY_BLUR,
    )  # fmt: skip


def extreme(function, scipy_filter, opencv_filter, image, radius):
    """`scipy_filter`, `opencv_filter`: names; None for element types that OpenCV does not have."""
    size = 2 * radius + 1
    box = np.ones((size, size), np.uint8)
    depth = {"uint8": 1, "uint16": 2}.get(image, 4)
    peers = {"SciPy": lambda d: getattr(ndimage, scipy_filter)(
        getattr(d, image), size, output=d.peer_to(getattr(d, image).dtype))}  # fmt: skip
    if opencv_filter:
        peers["OpenCV"] = lambda d: getattr(cv2, opencv_filter)(
            getattr(d, image), box, dst=d.peer_to(getattr(d, image).dtype))  # fmt: skip
    return (
        lambda zx, d: getattr(zx, function)(getattr(d, image), radius, d.to(getattr(d, image).dtype)),
        peers, copy(depth, depth), 0, radius, WHY_CALL if image.startswith("uint") else WHY_SMALL,
    )  # fmt: skip


def median(radius, opencv):
    size = 2 * radius + 1
    peers = {"SciPy": lambda d: ndimage.median_filter(d.real, size, output=d.peer_to(np.float32))}
    if opencv:
        peers["OpenCV"] = lambda d: cv2.medianBlur(d.real, size, dst=d.peer_to(np.float32))
    return (
        lambda zx, d: zx.ZXMedianFilter(d.real, radius, d.to(np.float32)),
        peers, copy(4, 4), 0, radius, WHY_SMALL,
    )  # fmt: skip


def nth(zx, images):
    return zx.ZXNthElement(images.real, images.pixels // 100)


def median_z(zx, images):
    return zx.ZXMedianZ(images.volume, images.to(np.float32, *images.volume.shape[1:]))


TOPICS = (
    Topic("Smoothing", (
        Row("`MovingAverage`, radius 5, Real 4",
            lambda zx, d: zx.ZXMovingAverage(d.real, 5, d.to(np.float32)),
            {"SciPy": lambda d: ndimage.uniform_filter(d.real, 11, output=d.peer_to(np.float32)),
             "OpenCV": lambda d: cv2.blur(d.real, (11, 11), dst=d.peer_to(np.float32))}, copy(4, 4), 1e-4, 5, WHY_BOX),
        Row("`MovingAverage`, radius 5, Real 8",
            lambda zx, d: zx.ZXMovingAverage(d.real8, 5, d.to(np.float64)),
            {"SciPy": lambda d: ndimage.uniform_filter(d.real8, 11, output=d.peer_to(np.float64)),
             "OpenCV": lambda d: cv2.blur(d.real8, (11, 11), dst=d.peer_to(np.float64))},
            copy(8, 8), 1e-11, 5, WHY_BOX),
        Row("`MovingAverage`, radius 5, Complex 8",
            lambda zx, d: zx.ZXMovingAverage(d.wave, 5, d.to(np.complex64)), {"SciPy": scipy_complex_mean}, copy(8, 8),
            1e-4, 5, WHY_BOX),
        Row("`MovingAverage2`, radius 5, Real 4", two_means, {"SciPy": scipy_two_means, "OpenCV": opencv_two_means},
            copy(4, 8), 1e-4, 5, WHY_BOX),
        Row("`MovingAverageX`, radius 5, Real 4", *along("ZXMovingAverageX", 1, (11, 1))),
        Row("`MovingAverageY`, radius 5, Real 4", *along("ZXMovingAverageY", 0, (1, 11))),
        Row(f"`MovingAverageZ`, radius 2, Real 4, {DEPTH} planes", volume_means, {"SciPy": scipy_volume_means},
            copy(4, 4), 1e-4, 0, WHY_BOX),
        Row("`GaussianBlur`, sigma 2, Real 4", *blur("real", np.float32, 2, 1e-5)),
        Row("`GaussianBlur`, sigma 2, Real 8", *blur("real8", np.float64, 2, 1e-12)),
        Row("`GaussianBlur`, sigma 10, Real 4", *blur("real", np.float32, 10, 1e-5)),
    ), "Compared without the border, where SciPy and OpenCV reflect the image."),
    Topic("Ranks", (
        Row("`MaximumFilter`, radius 1, Real 4", *extreme("ZXMaximumFilter", "maximum_filter", "dilate", "real", 1)),
        Row("`MaximumFilter`, radius 5, Real 4", *extreme("ZXMaximumFilter", "maximum_filter", "dilate", "real", 5)),
        Row("`MaximumFilter`, radius 20, Real 4", *extreme("ZXMaximumFilter", "maximum_filter", "dilate", "real", 20)),
        Row("`MinimumFilter`, radius 5, Real 4", *extreme("ZXMinimumFilter", "minimum_filter", "erode", "real", 5)),
        Row("`MaximumFilter`, radius 5, uint8", *extreme("ZXMaximumFilter", "maximum_filter", "dilate", "uint8", 5)),
        Row("`MaximumFilter`, radius 5, uint16", *extreme("ZXMaximumFilter", "maximum_filter", "dilate", "uint16", 5)),
        Row("`MaximumFilter`, radius 5, uint32", *extreme("ZXMaximumFilter", "maximum_filter", None, "uint32", 5)),
        Row("`MedianFilter`, radius 1, Real 4", *median(1, True)),
        Row("`MedianFilter`, radius 2, Real 4", *median(2, True)),
        Row("`MedianFilter`, radius 5, Real 4", *median(5, False)),
        Row("`Median`, Real 4", lambda zx, d: zx.ZXMedian(d.real),
            {"NumPy": lambda d: np.median(d.real), "bottleneck": lambda d: bottleneck.median(d.real)}, read(4), 1e-3),
        Row("`NthElement`, 1 %, Real 4", nth,
            {"NumPy": lambda d: np.partition(d.real, d.pixels // 100, None)[d.pixels // 100],
             "bottleneck": lambda d: bottleneck.partition(d.real, d.pixels // 100, None)[d.pixels // 100]}, read(4)),
        Row(f"`MedianZ`, {DEPTH} planes, Real 4", median_z,
            {"NumPy": lambda d: np.median(d.volume, axis=0, out=d.peer_to(np.float32, *d.volume.shape[1:])),
             "bottleneck": lambda d: bottleneck.median(d.volume, axis=0)}, read(4), 1e-6),
    ), "The median of an even number of values is the mean of two, which NumPy computes in single precision."),
)  # fmt: skip
