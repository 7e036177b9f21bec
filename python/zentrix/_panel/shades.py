"""Pictures of 8 bits per channel for the five displays."""

import numpy as np
from matplotlib import colormaps

DISPLAYS = ("real", "imaginary", "modulus", "log", "phase")
MARK = (255, 0, 200, 255)  # pixels that are not finite; neither a grey nor a colour of the phases
_SAMPLES = 60_000  # quantiles of so many values are good enough for the eye

_GREYS = np.repeat(np.arange(256, dtype=np.uint8)[:, None], 4, axis=1)
_GREYS[:, 3] = 255
# twilight is even in brightness, and cyclic: phase 0 is dark, +-pi light, positive phases reddish, negative bluish.
_PHASES = colormaps["twilight"](np.arange(256) / 256, bytes=True)


def displayed(wave, display):
    """The real numbers that a display shows, float32."""
    if display == "real":
        return wave.real
    if display == "imaginary":
        return wave.imag
    if display == "phase":
        return np.angle(wave)
    modulus = np.abs(wave)
    if display == "modulus":
        return modulus
    with np.errstate(divide="ignore"):
        return np.log(modulus)


def grey_limits(values, display):
    """The 0.1 % and 99.9 % quantiles, of a regular sample if there are many.

    As in the pictures of the command line, noise is no contrast: they are equal if they differ by less than 1e-5 of
    their magnitude, for phases and logarithms also by less than 1e-5; and a modulus whose quantiles differ by less than
    2 % is shown from 0 to 1.25 times the upper one.
    """
    sample = values.ravel()[:: max(1, values.size // _SAMPLES) | 1]
    sample = sample[np.isfinite(sample)]
    if sample.size == 0:
        return 0.0, 0.0
    low, high = (int(share * (sample.size - 1)) for share in (0.001, 0.999))
    parts = np.partition(sample, (low, high))
    black, white = float(parts[low]), float(parts[high])
    if display == "modulus" and 0 < white and white - black < 0.02 * white:
        return 0.0, 1.25 * white
    unit = 1.0 if display in ("phase", "log") else 0.0
    return (black, white) if white - black >= 1e-5 * max(abs(black), abs(white), unit) else (black, black)


def picture_of(wave, display, colour, marks=None):
    """(RGBA, limits of the greys or None for colours). `marks` are painted over."""
    values = displayed(wave, display)
    if display == "phase" and colour:
        picture, limits = phase_picture(values), None
    else:
        limits = grey_limits(values, display)
        picture = grey_picture(values, limits)
    if marks is not None:
        picture[marks] = MARK
    return picture, limits


def grey_picture(values, limits):
    """RGBA, black at limits[0] and white at limits[1]; all grey if they are equal."""
    black, white = limits
    if white <= black:
        return _GREYS[np.full(values.shape, 128, np.uint8)]
    levels = (values - np.float32(black)) * np.float32(255 / (white - black))
    np.clip(levels, 0, 255, out=levels)
    levels += np.float32(0.5)
    return _coloured(np.nan_to_num(levels, copy=False).astype(np.uint8), _GREYS)


def phase_picture(phase):
    """RGBA of phases [rad]."""
    levels = phase * np.float32(128 / np.pi) + np.float32(128.5)
    return _coloured(levels.astype(np.int32).astype(np.uint8), _PHASES)  # 256 is 0 again


def transfer_picture(square):
    """RGBA of values from -1 to 1; blue where they are not a number."""
    picture = grey_picture(np.nan_to_num(square).astype(np.float32), (-1.0, 1.0))
    picture[np.isnan(square)] = (40, 48, 90, 255)
    return picture


def colour_wheel(size):
    """RGBA of a ring, phase 0 right, counter-clockwise; transparent elsewhere."""
    axis = np.arange(size) - (size - 1) / 2
    x, y = np.meshgrid(axis, -axis)
    wheel = phase_picture(np.arctan2(y, x).astype(np.float32))
    distance = np.hypot(x, y) * 2 / size
    inside = np.clip((1 - distance) * size / 2, 0, 1) * np.clip((distance - 0.45) * size / 2, 0, 1)
    wheel[..., 3] = (255 * inside).astype(np.uint8)
    return wheel


def _coloured(levels, table):
    return np.take(table.view(np.uint32).ravel(), levels).view(np.uint8).reshape(levels.shape + (4,))
