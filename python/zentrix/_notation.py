"""Coefficients in the notations of other programs and of the literature."""

import numpy as np

from . import _core
from ._coefficients import COEFFICIENTS, polar
from ._numbers import flag, number, shown, word
from ._optics import kilovolts

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
    values = _by_name(values, [*COEFFICIENTS, "kv"])
    result = {"energy": kilovolts(values.pop("kv"), slow=True) * 1e3} if "kv" in values else {}
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
    names = [name for name, _ in _core.to_notation([(0.0, 0.0)] * len(COEFFICIENTS), *frame)]
    values = _by_name(values, [*names, "defocus", "Cs", "energy"])
    numbers = {name: number(value, f"{name} is a number") for name, value in values.items()}
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
    zero = number(zero, "zero is a direction in degrees")
    return notation, LENGTHS[length], radians, flag("clockwise", clockwise), zero


def _by_name(values, known):
    """A dictionary of values, or of (name, value) pairs, whose names are among the known ones, each once."""
    try:
        pairs = list(values.items() if hasattr(values, "items") else values)
        found = dict(pairs)
    except (TypeError, ValueError):
        raise TypeError(f"values is a dictionary of coefficients, not {shown(values)}.") from None
    if len(found) < len(pairs):
        names = [name for name, _ in pairs]
        raise ValueError(f"{next(name for name in names if names.count(name) > 1)} is given twice.")
    plain = {name.lower(): name for name in known}
    for name in found:
        if not isinstance(name, str):
            raise TypeError(f"The names of coefficients are texts, not {shown(name)}.")
        if name not in known:
            near = plain.get({"kv": "energy", "energy": "kv"}.get(name.lower(), name.lower()))
            advice = f". Did you mean {near}?" if near else f"; they are {', '.join(known)}."
            raise ValueError(f"{name} is not a name of coefficients here{advice}")
    return found


def _single(name, value):
    modulus, degrees = polar(name, value)
    if np.ndim(modulus):
        raise ValueError(f"{name} is one coefficient here, not {shown(value)}.")
    return float(modulus), float(degrees)
