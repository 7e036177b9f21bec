"""Numbers as people write them. A refusal says what the parameter takes and what it was given.

In all functions `takes` begins the text of the refusal: "kv is a number in kV".
"""

import decimal
import math
import numbers
import reprlib

import numpy as np


def as_scalar(value):
    """A float, or a complex number if that is the value's type; None for all others, among them booleans and texts."""
    if isinstance(value, np.ndarray) and value.ndim == 0 and not is_masked(value):
        value = value[()]
    if isinstance(value, (bool, np.bool_)):
        return None
    try:
        if type(value) in (int, float) or isinstance(value, (numbers.Real, decimal.Decimal)):
            return float(value)
        return complex(value) if isinstance(value, numbers.Complex) else None
    except OverflowError:
        return math.inf
    except ValueError:  # a signalling not-a-number of decimal
        return math.nan


def number(value, takes):
    """One finite real number as a float."""
    scalar = as_scalar(value)
    if not isinstance(scalar, float):
        refuse_quantity(value, takes)
        raise TypeError(f"{takes}, not {shown(value)}.")
    if not math.isfinite(scalar):
        raise ValueError(f"{takes}, not {shown(value)}.")
    return scalar


def reals(value, takes):
    """Finite real numbers: a float, or an array of float64."""
    if isinstance(value, float) and math.isfinite(value):  # the defaults
        return float(value)
    array = as_array(value, takes)
    if array is None:
        return number(value, takes)
    if array.dtype == object:
        return each(array, lambda element: reals(element, takes), takes)
    if array.dtype.kind not in "iuf":
        raise TypeError(f"{takes}, not {shown(value)}.")
    return all_finite(array.astype(np.float64), takes)


def as_array(value, takes):
    """The array that a list, a range or an array is; None for everything else. Elements of a list are objects."""
    refuse_quantity(value, takes)
    if is_masked(value):
        raise TypeError(f"{takes}, not a masked array; pass its compressed() values.")
    if isinstance(value, (list, range)):
        array = np.empty(len(value), object)
        for index, element in enumerate(value):
            array[index] = element
    elif hasattr(value, "__array__") and np.ndim(value) > 0:
        array = np.asarray(value)
    else:
        return None
    if array.size == 0:
        raise ValueError(f"{takes}; {shown(value)} is empty.")
    return array


def each(array, convert, takes):
    """The array of the converted elements, with the axes of `array` first."""
    converted = [convert(element) for element in array.ravel()]
    if len({np.shape(one) for one in converted}) > 1:
        raise ValueError(f"{takes}; the elements of the list have different lengths.")
    return np.stack(converted).reshape(array.shape + np.shape(converted[0]))


def all_finite(array, takes):
    bad = ~np.isfinite(array)
    if bad.any():
        where = ", ".join(map(str, np.argwhere(bad)[0]))
        raise ValueError(f"{takes}; element {where} of the array is {array[bad][0]}.")
    return array


def refuse_quantity(value, takes):
    """Refuses numbers with a unit: NumPy would drop the unit silently."""
    if hasattr(value, "units") or hasattr(value, "unit"):
        raise TypeError(f"{takes}: convert {shown(value)} to this unit and pass the plain number.")


def word(name, value, words):
    """The value, if it is one of the words."""
    if not (isinstance(value, str) and value in words):
        listed = ", ".join(f'"{one}"' for one in words[:-1]) + f' or "{words[-1]}"'
        raise (ValueError if isinstance(value, str) else TypeError)(f"{name} is {listed}, not {shown(value)}.")
    return value


def flag(name, value):
    if not isinstance(value, (bool, np.bool_)):
        raise TypeError(f"{name} is True or False, not {shown(value)}.")
    return bool(value)


def is_pair(value):
    """Whether a value has two parts, each whatever it is."""
    if isinstance(value, np.ndarray):
        return value.shape[:1] == (2,) and not is_masked(value)
    return isinstance(value, (tuple, list)) and len(value) == 2


def is_masked(value):
    return isinstance(value, np.ma.MaskedArray)


def shown(value):
    """A short text of a value for a refusal."""
    if isinstance(value, np.ndarray) and value.ndim > 0:
        return f"an array of {value.dtype} and shape {value.shape}"
    return reprlib.repr(value)
