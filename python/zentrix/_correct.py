"""Aberrations of a lens, in the units of the panel."""

import math

import numpy as np

from . import _core

_COEFFICIENTS = _core.coefficients()


def correct(
    wave,
    *,
    pixel,
    kv=None,
    wavelength=None,
    C1=0.0,
    A1=0.0,
    B2=0.0,
    A2=0.0,
    C3=0.0,
    S3=0.0,
    A3=0.0,
    B4=0.0,
    D4=0.0,
    A4=0.0,
    C5=0.0,
    A5=0.0,
    R5=0.0,
    S5=0.0,
    focus_spread=0.0,
    convergence=0.0,
    vibration=0.0,
    tilt=(0.0, 0.0),
    remove=True,
    envelope="auto",
    nan="refuse",
):
    """Removes aberrations from a wave or, with remove=False, applies them.

    wave           complex array (ny, nx), not modified. The result is a new array of complex64.
    pixel          pixel size [nm]
    kv             accelerating voltage [kV]; or `wavelength` [nm]
    C1 ... S5      aberrations. C1, C3, C5 are numbers; the others a modulus or (modulus, degrees), counter-clockwise on
                   the displayed image. C1, A1, B2, A2 in nm; S3, A3, B4, D4, A4 in um; C3, C5, A5, R5, S5 in mm.
                   C1 < 0 is underfocus.
    focus_spread, convergence, vibration
                   rms widths of the envelope [nm, mrad, nm]
    tilt           beam tilt, (right, up) on the displayed image [mrad]
    envelope       "on": damp by the envelope; "off": do not; "auto": only if remove is False
    nan            pixels that are infinite or not a number: "refuse" them, or replace them by "zero" or by the "mean" of
                   the others

    Uses the running host, or loads one. Raises ValueError or TypeError for invalid parameters.
    """
    coefficients = dict(C1=C1, A1=A1, B2=B2, A2=A2, C3=C3, S3=S3, A3=A3, B4=B4, D4=D4, A4=A4, C5=C5, A5=A5, R5=R5, S5=S5)
    lens = {name: _polar(name, value) for name, value in coefficients.items()}
    result = _as_wave(wave)
    spread = (float(focus_spread), float(convergence), float(vibration))
    _core.correct(
        _running_core(),
        result,
        _wavelength(kv, wavelength),
        float(pixel),
        lens,
        spread,
        complex(*tilt),
        bool(remove),
        envelope,
        nan,
    )
    return result


def _running_core():
    from . import load  # the package imports this module

    return load()._core


def _wavelength(kv, wavelength):
    if (kv is None) == (wavelength is None):
        raise TypeError("correct() needs either kv or wavelength.")
    return _core.electron_wavelength(kv) if wavelength is None else float(wavelength)


def _as_wave(wave):
    wave = np.asarray(wave)
    if wave.ndim != 2 or wave.dtype.kind != "c":
        raise TypeError(f"The wave has to be a complex array of two dimensions, not {wave.dtype} of shape {wave.shape}.")
    return np.array(wave, dtype=np.complex64, order="C")


def _polar(name, value):
    """(modulus, degrees) of a coefficient."""
    _, unit, has_angle = _COEFFICIENTS[name]
    try:
        if np.ndim(value) == 0:
            polar = float(value), 0.0
        else:
            modulus, degrees = value
            polar = float(modulus), float(degrees)
    except (TypeError, ValueError):
        polar = math.nan, math.nan
    if not (math.isfinite(polar[0]) and math.isfinite(polar[1])) or (np.ndim(value) and not has_angle):
        form = "a modulus or (modulus, degrees)" if has_angle else "a number"
        raise ValueError(f"{name} is {form} in {unit}, not {value!r}.")
    return polar
