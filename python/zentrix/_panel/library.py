"""What the panel needs of the rest of the package."""

import numpy as np

from .. import _core
from .._coefficients import polar
from .._correct import KeptSpectrum, correct as _correct
from .._optics import Optics
from .pages import COEFFICIENTS, WIDTHS


def checked_wave(wave):
    """(wave as complex64, all finite; mask of the pixels that were not). Those become the mean of the others."""
    wave = np.asarray(wave)
    if wave.ndim != 2 or wave.dtype.kind != "c" or wave.size == 0:
        raise TypeError(f"The wave is a complex array of two dimensions, not {wave.dtype} of shape {wave.shape}.")
    with np.errstate(over="ignore", invalid="ignore"):
        wave = np.array(wave, np.complex64, order="C")
    bad = ~np.isfinite(wave)
    if bad.all():
        raise ValueError("No pixel of the wave is a finite number.")
    if bad.any():
        wave[bad] = wave[~bad].mean(dtype=np.complex128)
    return wave, bad


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


def wavelength(values):
    """[nm]. Raises ValueError for a voltage that has none."""
    return values["wavelength"][0] if "wavelength" in values else _core.electron_wavelength(values["kv"][0])


def correct(wave, keywords):
    return _correct(wave, **keywords)


def check(keywords):
    """Raises ValueError or TypeError as `correct` does."""
    _correct(np.zeros((1, 1), np.complex64), **keywords)


class LiveWave:
    """A wave that is corrected again and again."""

    def __init__(self, wave):
        self.wave = wave
        self._spectrum = KeptSpectrum(wave)
        self._result = np.empty_like(wave)

    def corrected(self, keywords):
        """The same array each time."""
        return self._spectrum.correct(self._result, **keywords)
