"""Aberrations of a lens applied to waves and removed from them."""

import numpy as np

from . import _core
from ._optics import Optics, takes_optics
from ._signals import takes_signals
from ._wave_arrays import checked_copy, planes


@takes_signals
@takes_optics
def correct(wave, *, nan="refuse", progress=None, **optics):
    """Removes the aberrations of a lens from a wave, or from each wave of a stack.

    wave           complex array (..., y, x), not modified. Leading axes are a stack, wave by wave. The computation is
                   done in single precision, whatever the array has. Also a signal of HyperSpy, whose axes and metadata
                   give pixel and kv unless they are given here; or a Dask array, see zentrix.dask.
    nan            pixels that are infinite or not a number, and masked ones: "refuse" them, or replace them by "zero"
                   or by the "mean" of the wave's other pixels
    progress       tqdm.tqdm or another function that wraps an iterable and takes total=: it counts the waves of a stack
    OPTICS

    Returns a new array of complex64: the axes of the sweep, then those of the wave. For a signal it returns a new
    signal with the same axes and metadata, for a Dask array a Dask array. Uses the running host, or loads one.
    Raises TypeError or ValueError, naming the parameter, for what it cannot use; ScriptError if the result leaves the
    range of single precision.

        focal_series = zentrix.correct(wave, kv=300, pixel=0.02, C1=np.linspace(-60, 60, 25), A1="14@35")
    """
    return _multiplied(wave, Optics("correct", optics), True, nan, progress)


@takes_signals
@takes_optics
def aberrate(wave, *, nan="refuse", progress=None, **optics):
    """Applies the aberrations of a lens to a wave, or to each wave of a stack: what a microscope does to it.

    The opposite of `correct` with the same parameters, except that the envelope, if there is one, damps.

    wave, nan, progress    as in `correct`
    OPTICS

    Returns and raises the same as `correct`.

        image = abs(zentrix.aberrate(wave, kv=300, pixel=0.02, C1=-40, C3=0.1, focus_spread=3)) ** 2
    """
    return _multiplied(wave, Optics("aberrate", optics), False, nan, progress)


class KeptSpectrum:
    """The spectrum of one wave, kept for many calls with other parameters.

    wave, nan      as in `correct`, of two dimensions

    Each call costs the multiplication and the transform back, and returns the same bits as the function of its name.
    """

    def __init__(self, wave, nan="refuse"):
        copy = checked_copy(wave, nan)
        if copy.ndim != 2:
            raise ValueError(f"A spectrum is kept of one wave of shape (y, x), not {copy.shape}.")
        self.shape = copy.shape
        self._spectrum = _core.Spectrum(running_core(), copy)

    def correct(self, out=None, **optics):
        """The corrected wave; `out`, if given, is overwritten and returned: complex64, C-contiguous, of that shape."""
        return self._multiplied(Optics("correct", optics), True, out)

    def aberrate(self, out=None, **optics):
        """The aberrated wave; `out` as in `correct`."""
        return self._multiplied(Optics("aberrate", optics), False, out)

    def _multiplied(self, lens, remove, out):
        if out is None:
            out = np.empty(lens.shape + self.shape, np.complex64)
        elif out.shape != lens.shape + self.shape or out.dtype != np.complex64 or not out.flags.c_contiguous:
            raise ValueError(f"out is a C-contiguous complex64 array of shape {lens.shape + self.shape}.")
        host = running_core()
        for index, setting in lens.settings():
            self._spectrum.multiply(host, out[index], setting, remove, lens.envelope)
        return out


def _multiplied(wave, lens, remove, nan, progress):
    waves, host = checked_copy(wave, nan), running_core()
    if lens.shape == ():
        ((_, setting),) = lens.settings()
        for _, plane in planes(waves, progress):
            _core.correct(host, plane, setting, remove, lens.envelope)
        return waves
    result = np.empty(lens.shape + waves.shape, np.complex64)
    for place, plane in planes(waves, progress):
        spectrum = _core.Spectrum(host, plane)
        for index, setting in lens.settings():
            spectrum.multiply(host, result[index + place], setting, remove, lens.envelope)
    return result


def running_core():
    from . import load  # the package imports this module

    return load()._core
