"""What the panel needs of the rest of the package."""

import numpy as np

from .. import _core
from .._coefficients import polar
from .._correct import KeptSpectrum, correct as _correct
from .._optics import Optics
from .._transfer import ctf
from .._wave_arrays import checked_copy, single_precision
from .pages import COEFFICIENTS, WIDTHS


def checked_wave(wave):
    """(wave as complex64, all finite; mask of the pixels that were not, or were masked). Those become the mean of the
    others, as zentrix.correct(wave, nan="mean") makes them.
    """
    copy = single_precision(wave)
    if copy.ndim != 2:
        raise ValueError(f"The panel shows one wave of shape (y, x), not {copy.shape}.")
    bad = ~np.isfinite(copy)
    return checked_copy(copy, "mean") if bad.any() else copy, bad


def start_values(optics, rows):
    """name -> (value, degrees) of all coefficients and the microscope's rows, from keywords of zentrix.correct."""
    checked = Optics("panel", optics)
    optics = {**optics, "pixel": checked.pixel}
    zero = {name: (0.0, 0.0) for name in (*COEFFICIENTS, *(row.name for row in rows))}
    return {**zero, **values_of(optics, zero)}


def values_of(changes, known):
    """name -> (value, degrees) from keywords; raises TypeError or ValueError for one that the panel cannot show."""
    values = {}
    for name, value in changes.items():
        if name not in known:
            raise TypeError(f"The panel has no parameter {name!r}.")
        parts = polar(name, value) if name in COEFFICIENTS else (value, 0.0)
        if any(np.ndim(part) for part in parts):
            raise ValueError(f"The panel shows one value of {name}, not a sweep.")
        values[name] = tuple(map(float, parts))
    return values


def correct(wave, keywords):
    return _correct(wave, **keywords)


def check(keywords):
    """Raises ValueError or TypeError as `correct` does."""
    _correct(np.zeros((1, 1), np.complex64), **keywords)


def contrast(shape, optics):
    """sin(chi) times the envelope on the spectrum of an image, zero frequency in the middle, float32."""
    return ctf(shape, **optics).values


class Lens:
    """One lens at complex frequencies, right + i up on the displayed image [1/nm]: arrays of complex128, contiguous."""

    def __init__(self, optics):
        checked = Optics("panel", optics)
        ((_, self._setting),) = checked.settings()
        self._envelope = checked.envelope

    def transfer(self, frequencies):
        """What `aberrate` multiplies a spectrum by, complex128."""
        values = np.empty(frequencies.shape, np.complex128)
        _core.transfer_values(self._setting, frequencies, values, self._envelope)
        return values

    def chi(self, frequencies):
        """The aberration function, zero at the zero frequency, not wrapped [rad]."""
        values = np.empty(frequencies.shape)
        _core.aberration_function(self._setting, frequencies, values)
        return values


class LiveWave:
    """A wave that is corrected again and again."""

    def __init__(self, wave):
        self.wave = wave
        self._spectrum = KeptSpectrum(wave)
        self._result = np.empty_like(wave)

    def corrected(self, keywords):
        """The same array each time."""
        return self._spectrum.correct(self._result, **keywords)
