"""Waves as arrays: what is accepted, and what happens to pixels that are not finite."""

import math
import os

import numpy as np

from . import _core
from ._numbers import is_masked, shown, word


NAN_RULES = ("refuse", "zero", "mean")


def checked_copy(wave, nan):
    """A copy of a wave or a stack of waves (..., y, x) as contiguous complex64, all finite by the rule `nan`."""
    word("nan", nan, NAN_RULES)
    copy = single_precision(wave)
    for place, plane in planes(copy):
        bad = _core.replace_not_finite(plane, nan)
        if bad == 0:
            continue
        which = f"the wave's plane {', '.join(map(str, place))}" if place else "the wave"
        if nan == "refuse":
            raise ValueError(
                f"{bad} of {plane.size} pixels of {which} are {_what_is_wrong(wave, np.asarray(wave)[place])}; "
                'nan="zero" or "mean" replaces them.'
            )
        if bad == plane.size:
            raise ValueError(f"No pixel of {which} is a finite number.")
    return copy


def single_precision(wave):
    """A copy of a wave or a stack of waves as contiguous complex64; masked pixels are not a number."""
    values = _complex_values(wave)
    with np.errstate(over="ignore", invalid="ignore"):
        copy = np.array(values, np.complex64, order="C")
    if is_masked(wave):
        copy[np.ma.getmaskarray(wave)] = np.nan
    return copy


def planes(array, progress=None):
    """(index, plane) of each two-dimensional plane; the index is () for a single one. `progress` wraps the indices."""
    stack = array.shape[:-2]
    indices = np.ndindex(stack)
    if progress is not None:
        if not callable(progress):
            raise TypeError(f"progress is a function such as tqdm.tqdm, not {shown(progress)}.")
        indices = progress(indices, total=math.prod(stack))
    return ((index, array[index]) for index in indices)


def _complex_values(wave):
    if isinstance(wave, (str, bytes, os.PathLike)):
        raise TypeError(f"The wave is a complex array, not a file's name: numpy.load({shown(wave)}) reads one.")
    try:
        values = np.asarray(wave)
    except ValueError:
        raise TypeError(f"The wave is a complex array of shape (..., y, x), not {shown(wave)}.") from None
    if values.dtype.kind != "c":
        hint = "; a wave is modulus * numpy.exp(1j * phase)" if values.dtype.kind in "iuf" else ""
        raise TypeError(f"The wave is a complex array, not {values.dtype} of shape {values.shape}{hint}.")
    if values.ndim < 2:
        raise ValueError(f"The wave is an array of shape (..., y, x), not {values.shape}.")
    if values.size == 0:
        raise ValueError(f"The wave of shape {values.shape} has no pixel.")
    return values


def _what_is_wrong(wave, plane):
    if is_masked(wave):
        return "masked, infinite or not a number"
    if np.isfinite(plane).all():
        return "beyond the range of single precision"
    return "infinite or not a number"
