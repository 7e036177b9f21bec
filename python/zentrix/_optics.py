"""The parameters of microscope and lens that the functions for waves share."""

import difflib
import inspect
import re

import numpy as np

from . import _core
from ._coefficients import COEFFICIENTS, polar
from ._numbers import as_scalar, is_pair, number, reals, shown, word
from ._user_warning import warn

WIDTHS = {"focus_spread": "nm", "convergence": "mrad", "vibration": "nm"}
#: name -> default, in the order of the signatures
PARAMETERS = {
    "pixel": inspect.Parameter.empty,
    "kv": None,
    "wavelength": None,
    **dict.fromkeys(COEFFICIENTS, 0.0),
    **dict.fromkeys(WIDTHS, 0.0),
    "tilt": (0.0, 0.0),
    "envelope": "auto",
}
#: What other programs call the parameters.
OTHER_NAMES = {
    "kv (accelerating voltage in kV: kv=300)": "energy voltage ht hv kev e0 ev high_tension beam_energy acceleration",
    "C1 (nm; C1 < 0 is underfocus)": "defocus df dz focus z",
    "C3 (spherical aberration, mm)": "cs spherical spherical_aberration",
    "A1 (two-fold astigmatism, nm)": "astigmatism stig astig",
    "B2 (axial coma, nm)": "coma",
    "pixel (pixel size in nm)": "sampling px pixelsize pixel_size pixel_nm scale dx angpix gpts",
    "wavelength (nm)": "lam lambda_ wavelength_nm",
    "focus_spread (rms width in nm)": "focal_spread delta defocus_spread cc",
    "convergence (rms width in mrad)": "semiangle alpha angular_spread divergence convergence_angle",
    "vibration (rms width in nm)": "vib jitter",
    "tilt ((right, up) in mrad)": "beam_tilt tilt_x tilt_y",
    'envelope ("auto", "on" or "off")': "damping damp",
}


class Optics:
    """The checked parameters of one call, `given` as keywords of the function `caller`.

    `shape` is that of the sweep, () if no parameter is an array; `settings` has its elements.
    """

    def __init__(self, caller, given):
        for name in given:
            if name not in PARAMETERS:
                raise TypeError(f"{caller}() has no parameter {name!r}. {advice(name)}")
        if "pixel" not in given:
            raise TypeError(f"{caller}() needs pixel, the pixel size in nm.")
        values = {**PARAMETERS, **given}
        self.pixel = pixel_size(values["pixel"])
        self.wavelength = _wavelength(caller, values["kv"], values["wavelength"])
        _warn_of_large_angles(self.wavelength, self.pixel)
        self.envelope = word("envelope", values["envelope"], ("auto", "on", "off"))
        numbers = {name: polar(name, values[name]) for name in COEFFICIENTS}
        for name, unit in WIDTHS.items():
            numbers[name] = (reals(values[name], f"{name} is an rms width in {unit}"),)
        numbers["tilt"] = tilt_parts(values["tilt"])
        self._values = _broadcast(numbers)
        self.shape = self._values.shape[:-1]

    def settings(self):
        """Index in the sweep and parameters for _core, element by element."""
        count = 2 * len(COEFFICIENTS)
        for index in np.ndindex(self.shape):
            values = self._values[index].tolist()
            lens = list(zip(values[:count:2], values[1:count:2]))
            widths, tilt = values[count : count + 3], complex(*values[count + 3 :])
            yield index, _core.Optics(self.wavelength, self.pixel, lens, widths, tilt)


def takes_optics(function):
    """Replaces the parameter **optics in a function's signature by the names and defaults that it accepts."""
    own = [one for one in inspect.signature(function).parameters.values() if one.kind is not one.VAR_KEYWORD]
    keyword = inspect.Parameter.KEYWORD_ONLY
    more = [inspect.Parameter(name, keyword, default=value) for name, value in PARAMETERS.items()]
    function.__signature__ = inspect.Signature(own + more)
    function.__doc__ = (function.__doc__ or "").replace("    OPTICS\n", DOCUMENTATION)  # -OO leaves none
    return function


DOCUMENTATION = """\
    pixel          pixel size [nm], 1e-4 or more; (x, y) if both are equal
    kv             accelerating voltage [kV], 1 to 3000; or `wavelength` [nm]
    C1 ... S5      aberrations. C1, A1, B2, A2 in nm; S3, A3, B4, D4, A4 in um; C3, C5, A5, R5, S5 in mm. C1 < 0 is
                   underfocus. Each is a number, (modulus, degrees), a complex modulus * exp(i angle), or a text as on
                   the command line, "14@35"; angles are counter-clockwise on the displayed image. C1, C3 and C5 are
                   round and have no angle.
    focus_spread, convergence, vibration
                   rms widths of the envelope [nm, mrad, nm]
    tilt           beam tilt, (right, up) on the displayed image [mrad]
    envelope       "on": damp by the envelope; "off": do not; "auto": only where aberrations are applied, because
                   a factor that damps cannot undo damping

    A coefficient, width or part of the tilt may be an array: a sweep. Several arrays are broadcast together as in
    NumPy, and the result has the axes of the sweep first.
"""


def pixel_size(value):
    takes = "pixel is the pixel size in nm"
    if is_pair(value):
        first, second = (number(one, takes) for one in value)
        if first != second:
            raise ValueError(f"Pixels have to be square, not {first} x {second} nm: resample the wave.")
        value = first
    size = number(value, takes)
    _core.check_pixel_size(size)
    return size


def kilovolts(value, slow=False):
    """A plausible accelerating voltage; `slow` accepts those below 1 kV, too."""
    voltage = number(value, "kv is the accelerating voltage in kV")
    if not (slow and 0 < voltage < 1):
        _core.check_kilovolts(voltage)
    return voltage


def _wavelength(caller, kv, wavelength):
    if (kv is None) == (wavelength is None):
        raise TypeError(f"{caller}() needs either kv or wavelength.")
    if kv is None:
        length = number(wavelength, "wavelength is a number in nm")
        _core.check_wavelength(length)
        return length
    return _core.electron_wavelength(kilovolts(kv))


def _warn_of_large_angles(wavelength, pixel):
    """Light on fine pixels reaches some radians, electrons less; more comes from mixed units."""
    angle = wavelength / pixel / 2
    if (10 if wavelength > 100 else 2) < angle < 1e5:  # beyond that the correction itself refuses
        warn(f"Scattering angles reach {angle:.3g} rad: check the units of wavelength (nm) and pixel (nm).")


def _broadcast(numbers):
    """All values of `numbers` (name -> tuple of floats or arrays) along the last axis, the sweep's axes first."""
    flat = [part for parts in numbers.values() for part in parts]
    if all(isinstance(part, float) for part in flat):
        return np.array(flat)
    try:
        return np.stack(np.broadcast_arrays(*flat), axis=-1)
    except ValueError:
        shapes = ", ".join(f"{name} {np.shape(parts[-1])}" for name, parts in numbers.items() if np.ndim(parts[-1]))
        raise ValueError(f"The arrays of a sweep have to fit each other as in NumPy: {shapes}.") from None


def tilt_parts(value):
    """(right, up) [mrad], each a float or an array; `value` may be a complex number."""
    takes = "tilt is (right, up) in mrad"
    scalar = as_scalar(value)
    if isinstance(scalar, complex):
        value = scalar.real, scalar.imag
    if not is_pair(value):
        raise TypeError(f"{takes}, not {shown(value)}.")
    return tuple(reals(part, takes) for part in value)


def advice(name):
    if name == "remove":
        return "zentrix.correct removes aberrations, zentrix.aberrate applies them."
    for ours, theirs in OTHER_NAMES.items():
        if name.lower() in theirs.split():
            return f"Did you mean {ours}?"
    if re.fullmatch(r"(C|phi|c)_?\d\d\w*", name):
        return "The coefficients have the names C1, A1, B2 ...; zentrix.from_notation converts others."
    lower = {known.lower(): known for known in PARAMETERS}
    near = difflib.get_close_matches(name.lower(), lower, n=1)
    return f"Did you mean {lower[near[0]]}?" if near else f"It has {', '.join(PARAMETERS)}."
