"""The phase contrast transfer function sin(chi), damped by the envelope, for the overlay."""

import math
from functools import lru_cache

import numpy as np

from .pages import COEFFICIENTS, WIDTHS

#: name -> (power of w, power of its conjugate, divisor) in chi = 2 pi / lambda Re(sum C w^m w*^n / divisor)
TERMS = {
    "C1": (1, 1, 2), "A1": (0, 2, 2),
    "B2": (1, 2, 1), "A2": (0, 3, 3),
    "C3": (2, 2, 4), "S3": (1, 3, 1), "A3": (0, 4, 4),
    "B4": (2, 3, 1), "D4": (1, 4, 1), "A4": (0, 5, 5),
    "C5": (3, 3, 6), "S5": (2, 4, 1), "R5": (1, 5, 1), "A5": (0, 6, 6),
}  # fmt: skip
_NANOMETRES = {"nm": 1.0, "µm": 1e3, "mm": 1e6}
_SIZE = 240  # pixels of the square
_RADII, _AZIMUTHS = 300, 72
_LARGEST_STEP = 2 * math.pi / 3  # fewer than three samples a ring are not shown


class Transfer:
    """What the overlay shows.

    square      (240, 240), frequency -limit to limit along each axis, row 0 on top: sin(chi) times the envelope, not a
                number where chi turns by more than 2 pi / 3 from one pixel to the next
    frequency   (300,) [1/nm], 0 to limit
    profile     (300,) azimuthal mean of sin(chi) times the envelope; not a number where a ring is undersampled
    envelope    (300,)
    limit       the largest frequency along an axis, 1 / (2 pixel) [1/nm]
    """

    def __init__(self, values, wavelength, tilt=(0.0, 0.0)):
        """values   name -> (value, degrees) of all coefficients and the microscope; tilt [mrad], right and up"""
        self.limit = 0.5 / values["pixel"][0]
        tilt = complex(*tilt) * 1e-3
        square, polar = _grids(self.limit * wavelength, tilt)
        numbers = _coefficients(values)
        widths = [values[name][0] for name in WIDTHS]
        wave_number = 2 * math.pi / wavelength

        chi = wave_number * (numbers @ square.basis).reshape(_SIZE, _SIZE)
        damped = np.sin(chi) * _envelope(square.radius, values, wavelength, widths).reshape(chi.shape)
        self.square = np.where(_undersampled(chi), np.nan, damped)

        chi = wave_number * (numbers @ polar.basis).reshape(_AZIMUTHS, _RADII)
        radius = polar.radius.reshape(chi.shape)[0]
        self.frequency = radius / wavelength
        self.envelope = _envelope(radius, values, wavelength, widths)
        along, around = np.diff(chi, axis=1, prepend=0), np.diff(chi, axis=0, append=chi[:1])
        steps = np.maximum(np.abs(along).max(axis=0), np.abs(around).max(axis=0))
        self.profile = np.where(steps > _LARGEST_STEP, np.nan, np.sin(chi).mean(axis=0) * self.envelope)


class _Grid:
    """Terms of chi on scattering angles w [rad], so that chi of all points is one product with the coefficients."""

    def __init__(self, angles, tilt):
        self.radius = np.abs(angles)
        rows = []
        for m, n, divisor in TERMS.values():
            w, reference = angles + tilt, complex(tilt)
            term = (w**m * np.conj(w) ** n - reference**m * reference.conjugate() ** n) / divisor
            rows += [term.real, -term.imag]
        self.basis = np.array(rows)


@lru_cache(maxsize=4)
def _grids(largest_angle, tilt):
    axis = (np.arange(_SIZE) - _SIZE // 2) * (2 * largest_angle / _SIZE)
    x, y = np.meshgrid(axis, -axis)
    radius = np.linspace(0, largest_angle, _RADII)
    directions = np.exp(2j * math.pi * np.arange(_AZIMUTHS) / _AZIMUTHS)
    return _Grid((x + 1j * y).ravel(), tilt), _Grid(np.outer(directions, radius).ravel(), tilt)


def _coefficients(values):
    """Real and imaginary parts of the coefficients [nm], in the order of TERMS."""
    parts = []
    for name in TERMS:
        modulus, degrees = values[name]
        length = modulus * _NANOMETRES[COEFFICIENTS[name].unit]
        parts += [length * math.cos(math.radians(degrees)), length * math.sin(math.radians(degrees))]
    return np.array(parts)


def _envelope(angle, values, wavelength, widths):
    """Damping by focus spread, convergence and vibration, rms widths; docs/conventions.md has the formulas."""
    focus_spread, convergence, vibration = widths
    c1, c3, c5 = (values[name][0] * _NANOMETRES[COEFFICIENTS[name].unit] for name in ("C1", "C3", "C5"))
    slope = 2 * math.pi / wavelength * (c1 * angle + c3 * angle**3 + c5 * angle**5)
    exponent = (math.pi * focus_spread * angle**2 / wavelength) ** 2 / 2
    exponent += (convergence * 1e-3 * slope) ** 2 / 2 + 2 * (math.pi * vibration * angle / wavelength) ** 2
    return np.exp(-np.minimum(exponent, 50))


def _undersampled(chi):
    along_y, along_x = (np.abs(np.diff(chi, axis=axis)) > _LARGEST_STEP for axis in (0, 1))
    marks = np.zeros(chi.shape, bool)
    marks[1:] |= along_y
    marks[:-1] |= along_y
    marks[:, 1:] |= along_x
    marks[:, :-1] |= along_x
    return marks
