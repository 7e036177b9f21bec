"""Coefficients in the notations of other programs and of the literature."""

import numpy as np

from . import _core
from ._coefficients import COEFFICIENTS, polar
from ._numbers import number, shown, word

NOTATIONS = ("polar", "cartesian", "corrector")
#: unit of length -> nanometres; None: each coefficient in its unit of docs/conventions.md
LENGTHS = {None: 0.0, "pm": 1e-3, "A": 0.1, "Angstrom": 0.1, "Å": 0.1, "nm": 1.0, "um": 1e3, "mm": 1e6, "m": 1e9}


def to_notation(notation, values, *, length=None, angle="deg", clockwise=False, zero=0.0):
    """Converts coefficients of `correct` to another notation. docs/notation.md compares the notations.

    notation       "polar": C10, C12, phi12, C21, phi21, ...; "cartesian": C10, C12a, C12b, ...; "corrector": C1, A1,
                   phiA1, B2, phiB2, ..., of Uhlemann and Haider
    values         dictionary of coefficients, each in one of the forms that `correct` takes; also kv
    length         unit of all lengths of the other notation: "pm", "A", "nm", "um", "mm" or "m". None: the unit that
                   each coefficient has in `correct` (nm, um or mm)
    angle          unit of its angles: "deg" or "rad"
    clockwise      True: its azimuth grows clockwise on the displayed image
    zero           the direction of its azimuth 0 [degrees], counter-clockwise from right on the displayed image

    Returns a dictionary of the given coefficients, and energy [eV] for kv. Raises TypeError or ValueError, naming what
    it cannot use.

        >>> zentrix.to_notation("polar", {"C1": -62, "B2": (380, 110)}, length="A")
        {'C10': -620.0, 'C21': 11400.0, 'phi21': 110.0}
    """
    frame = _frame(notation, length, angle, clockwise, zero)
    values = dict(values)
    result = {"energy": number(values.pop("kv"), "kv is the accelerating voltage in kV") * 1e3} if "kv" in values else {}
    for name in values:
        if name not in COEFFICIENTS:
            raise ValueError(f"{name} is not a coefficient; they are {', '.join(COEFFICIENTS)}.")
    pairs = [_single(name, values.get(name, 0.0)) for name in COEFFICIENTS]
    numbers = iter(_core.to_notation(pairs, *frame))
    for name, (_, _, has_angle) in COEFFICIENTS.items():
        own = [next(numbers) for _ in range(2 if has_angle else 1)]
        if name in values:
            result.update(own)
    return result


def from_notation(notation, values, *, length=None, angle="deg", clockwise=False, zero=0.0):
    """Converts coefficients of another notation to those of `correct`; the parameters are those of `to_notation`.

    values         dictionary of numbers; also defocus, positive if underfocused (-C1), Cs (C3) and energy [eV]

    Returns a dictionary of the coefficients that are not zero, and kv if energy is given: keywords of `correct`.
    Raises TypeError or ValueError, naming what it cannot use.

        >>> zentrix.from_notation("polar", {"defocus": 620, "C12": 140, "phi12": 17.5}, length="A")
        {'C1': -62.0, 'A1': (14.0, 35.0)}
    """
    frame = _frame(notation, length, angle, clockwise, zero)
    numbers = {name: number(value, f"{name} is a number") for name, value in dict(values).items()}
    result = {"kv": numbers.pop("energy") / 1e3} if "energy" in numbers else {}
    pairs = _core.from_notation(list(numbers.items()), *frame)
    for (name, (_, _, has_angle)), (modulus, degrees) in zip(COEFFICIENTS.items(), pairs):
        if modulus != 0:
            result[name] = (modulus, degrees) if has_angle else modulus
    return result


def _frame(notation, length, angle, clockwise, zero):
    word("notation", notation, NOTATIONS)
    if not (length is None or isinstance(length, str)) or length not in LENGTHS:
        raise ValueError(f'length is None, "pm", "A", "nm", "um", "mm" or "m", not {shown(length)}.')
    radians = word("angle", angle, ("deg", "rad")) == "rad"
    return notation, LENGTHS[length], radians, bool(clockwise), number(zero, "zero is a direction in degrees")


def _single(name, value):
    modulus, degrees = polar(name, value)
    if np.ndim(modulus):
        raise ValueError(f"{name} is one coefficient here, not {shown(value)}.")
    return float(modulus), float(degrees)
