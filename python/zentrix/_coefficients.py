"""Aberration coefficients in each form that the package accepts, and arrays of them."""

import math

import numpy as np

from . import _core
from ._numbers import all_finite, as_array, as_scalar, each, refuse_quantity, reals, shown

#: name -> (meaning, unit, whether it has an angle), in the order of the panel's pages
COEFFICIENTS = _core.coefficients()


def polar(name, value):
    """(modulus, degrees) of a coefficient: two floats, or two arrays of float64 of the same shape.

    value   a number; (modulus, degrees); a complex number modulus * exp(i angle); a text as on the command line,
            "14@35"; or a list or array of one of these, for a sweep. In a pair, too, either part may be an array.
            A round coefficient (C1, C3, C5) has no angle: no pair, no imaginary part.
    """
    takes = _takes(name)
    if isinstance(value, str):
        return _parsed(name, value)
    if isinstance(value, tuple):
        return _pair(name, value, takes)
    scalar = as_scalar(value)
    if isinstance(scalar, float):
        if not math.isfinite(scalar):
            raise ValueError(f"{takes}, not {scalar}.")
        return scalar, 0.0
    if scalar is not None:
        modulus, degrees = _from_numbers(name, np.array([scalar]), takes, value)
        return float(modulus[0]), float(degrees[0])
    array = as_array(value, takes)
    if array is None:
        raise TypeError(f"{takes}, not {shown(value)}.")
    if array.dtype.kind in "OU":
        _refuse_pair_in_brackets(name, value)
        both = each(array, lambda element: np.stack(polar(name, element), axis=-1), takes)
        return both[..., 0], both[..., 1]
    if array.dtype.kind not in "iufc":
        raise TypeError(f"{takes}, not {shown(value)}.")
    return _from_numbers(name, array, takes, value)


def _has_angle(name):
    return COEFFICIENTS[name][2]


def _takes(name):
    unit = COEFFICIENTS[name][1]
    return f"{name} is a {'modulus or (modulus, degrees)' if _has_angle(name) else 'number'} in {unit}"


def _parsed(name, text):
    try:
        return _core.parse_coefficient(name, text)
    except ValueError as problem:
        raise ValueError(f"{problem}.") from None


def _pair(name, value, takes):
    if not _has_angle(name):
        raise ValueError(f"{takes}; it is round and has no angle, so it cannot be {shown(value)}.")
    if len(value) != 2:
        raise ValueError(f"{takes}, not {shown(value)}.")
    parts = [reals(part, takes) for part in value]
    if all(isinstance(part, float) for part in parts):
        return tuple(parts)
    try:
        return tuple(np.broadcast_arrays(*parts))
    except ValueError:
        shapes = " and ".join(str(np.shape(part)) for part in parts)
        raise ValueError(f"{takes}; arrays of shape {shapes} do not fit each other.") from None


def _from_numbers(name, array, takes, value):
    all_finite(array, takes)
    if array.dtype.kind != "c":
        array = array.astype(np.float64)
        return array, np.zeros_like(array)
    if _has_angle(name):
        return np.abs(array).astype(np.float64), np.degrees(np.angle(array)).astype(np.float64)
    if array.imag.any():
        raise ValueError(f"{takes}; it is round and has no angle, so it cannot be the complex {shown(value)}.")
    return array.real.astype(np.float64), np.zeros(array.shape)


def _refuse_pair_in_brackets(name, value):
    """[14, 35] may be meant as a pair or as a sweep."""
    if isinstance(value, list) and len(value) == 2 and _has_angle(name):
        if all(isinstance(as_scalar(one), float) for one in value):
            first, second = value
            raise ValueError(
                f"{name}=[{first}, {second}] is ambiguous: write ({first}, {second}) for modulus and degrees, "
                f"numpy.array([{first}, {second}]) for a sweep of two moduli."
            )
