"""What the panel needs of the rest of the package."""

import numpy as np

from .. import _core
from .._coefficients import polar
from .._correct import KeptSpectrum, correct as _correct, running_core
from .._optics import Optics, pixel_size, tilt_parts
from .._estimate import FREE, estimate
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
    zero = {name: (0.0, 0.0) for name in (*COEFFICIENTS, *(row.name for row in rows))}
    return {**zero, **values_of(optics, zero)}


def values_of(changes, known):
    """name -> (value, degrees) from keywords that `check` accepts, without those that are not `known`.

    Raises ValueError for a sweep.
    """
    values = {}
    for name, value in changes.items():
        if name in known:
            plain = pixel_size(value) if name == "pixel" else value
            parts = polar(name, value) if name in COEFFICIENTS else (plain, 0.0)
            values[name] = tuple(_one_number(part, name) for part in parts)
    return values


def tilt_of(value):
    """(right, up) as two floats [mrad]. Raises TypeError or ValueError as `correct`, and ValueError for a sweep."""
    return tuple(_one_number(part, "tilt") for part in tilt_parts(value))


def _one_number(value, name):
    if np.ndim(value):
        raise ValueError(f"The panel shows one value of {name}, not a sweep.")
    return float(value)


def correct(wave, keywords):
    return _correct(wave, **keywords)


def check(keywords):
    """Raises ValueError or TypeError as `correct` does."""
    checked = Optics("panel", keywords)
    for _, setting in checked.settings():
        _core.correct(running_core(), np.zeros((1, 1), np.complex64), setting, True, checked.envelope)


def contrast(shape, optics):
    """sin(chi) times the envelope on the spectrum of an image, zero frequency in the middle, float32."""
    return ctf(shape, **optics).values


class Lens:
    """One lens at complex frequencies [1/nm], right + i up on the displayed image: contiguous arrays of complex128."""

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
