"""Surveys, extremes, radial means and centre of mass."""

import numpy as np

from zentrix import Ref

from .peers import cv2, ndimage
from .row import Row, Topic, read

WHY_EXTREMES = "The peers search with wide vectors; our loop is compiled for every processor and has no form for AVX2."


def outputs(function, count, *images):
    refs = [Ref() for _ in range(count)]
    function(*images, *refs)
    return tuple(ref.value for ref in refs)


def numpy_survey(image, wide):
    """In double precision, as the script function; `wide` is room for a copy."""
    np.copyto(wide, image)
    flat = wide.ravel()
    result = float(image.min()), float(image.max()), wide.sum(), flat @ flat
    return *result, np.abs(wide, out=wide).sum()


def numpy_differences(images):
    one, two = images.real.astype(np.float64).ravel(), images.positive.astype(np.float64).ravel()
    d = one - two
    return one.sum(), one @ one, two.sum(), two @ two, d.sum(), d @ d, np.abs(d, out=d).sum()


def numpy_extremes(images):
    found = []
    for index in (images.real.argmin(), images.real.argmax()):
        y, x = np.unravel_index(index, images.real.shape)
        found += [x, y, 0, images.real[y, x]]
    return tuple(found)


def opencv_extremes(images):
    low, high, low_at, high_at = cv2.minMaxLoc(images.real)
    return *low_at, 0, low, *high_at, 0, high


def greatest(zx, images):
    x, y = Ref(), Ref()
    return zx.ZXMax(images.real, x, y, None), x.value, y.value


def numpy_greatest(images):
    y, x = np.unravel_index(images.real.argmax(), images.real.shape)
    return images.real[y, x], x, y


def opencv_greatest(images):
    _, high, _, at = cv2.minMaxLoc(images.real)
    return high, *at


def radii(images):
    rows, columns = np.ogrid[: images.width, : images.width]
    return np.hypot(columns - images.half, rows - images.half)


def numpy_rings(images):
    radius = (radii(images) + 0.5).astype(int).ravel()
    return np.bincount(radius, images.positive.ravel()) / np.maximum(np.bincount(radius), 1)


def centre_of_mass(zx, images):
    x, y = Ref(0.0), Ref(0.0)
    zx.ZXGetCenterOfMass(images.positive, x, y, np.inf, 1, 0.0)
    return y.value, x.value


def opencv_centre_of_mass(images):
    m = cv2.moments(images.positive)
    return m["m01"] / m["m00"], m["m10"] / m["m00"]


TOPICS = (
    Topic("Statistics", (
        Row("`Survey`, Real 4", lambda zx, d: outputs(zx.ZXSurvey, 5, d.real),
            {"NumPy": lambda d: numpy_survey(d.real, d.room(np.float64))}, read(4), 1e-7),
        Row("`Survey`, Real 8", lambda zx, d: outputs(zx.ZXSurvey, 5, d.real8),
            {"NumPy": lambda d: numpy_survey(d.real8, d.room(np.float64))}, read(8), 1e-7),
        Row("`SurveyDifference`, Real 4", lambda zx, d: outputs(zx.ZXSurveyDifference, 7, d.real, d.positive),
            {"NumPy": numpy_differences}, read(8), 1e-7),
        Row("`MinMaxStable`, Real 4", lambda zx, d: outputs(zx.ZXMinMaxStable, 8, d.real),
            {"NumPy": numpy_extremes, "OpenCV": opencv_extremes}, read(4), why=WHY_EXTREMES),
        Row("`Max`, Real 4", greatest, {"NumPy": numpy_greatest, "OpenCV": opencv_greatest}, read(4),
            why=WHY_EXTREMES),
        Row("`RadialSurvey`, Real 4", lambda zx, d: zx.ZXRadialSurvey(d.positive, d.half, d.half, 1.0, 1.0),
            {"NumPy": numpy_rings}, read(4), 1e-6),
        Row("`GetCenterOfMass`, Real 4", centre_of_mass,
            {"SciPy": lambda d: ndimage.center_of_mass(d.positive), "OpenCV": opencv_centre_of_mass}, read(4), 1e-4,
            why="OpenCV computes moments with integer positions and no limits of radius and threshold."),
    )),
)  # fmt: skip
