"""Unwrapping of phases with gaps, and how well it went."""

import operator
import os
from typing import Any, NamedTuple

import numpy as np

from . import _core
from ._correct import running_core
from ._numbers import flag, is_masked, refuse_quantity, shown
from ._signals import takes_signals
from ._user_warning import warn
from ._wave_arrays import planes


_MASK = "mask is a boolean array, True where a pixel is left out"


class UnwrapReport(NamedTuple):
    """How well a phase was unwrapped. Of a stack, each field is an array with an element for each plane.

    Pixels are neighbours if they share a side. Two neighbours have a cut between them if their difference in the
    result is not the wrapped difference.
    """

    #: loops of 2 x 2 pixels around which the phase grows by a turn, clockwise on the displayed image
    positive_residues: Any
    #: those around which it falls by a turn
    negative_residues: Any
    cut_pixels: Any  #: pixels with a cut to a neighbour
    regions: Any  #: areas that are connected by neighbours without a cut; each has an offset of its own
    #: pixels of regions in which nothing was unwrapped: with a cut to a larger region, and all values still wrapped
    unreached: Any
    left_out: Any  #: masked pixels, and those that are infinite or not a number
    labels: Any  #: (..., y, x): the number of each pixel's region, 1 for the plane's largest; 0 if it is left out


@takes_signals
def unwrap(phase, mask=None, box=None, report=False, progress=None):
    """Unwraps a phase by Goldstein's branch cuts (Radio Science 23 (1988) 713-720), each plane of a stack on its own.

    phase          real array (..., y, x), not modified, wrapped to -pi to pi [rad]; also a masked array, a signal of
                   HyperSpy, or a Dask array (zentrix.dask). The computation is done in single precision, whatever the
                   array has.
    mask           boolean array, True where a pixel is left out, as in NumPy's masked arrays. Its shape is that of the
                   phase, or that of a plane for all planes alike.
    box            largest box in which residues are joined [pixels]. None or 0: half the sum of width and height. 1 or
                   2: each residue is cut off to the nearest edge.
    report         True: return (unwrapped phase, UnwrapReport)
    progress       tqdm.tqdm or another function that wraps an iterable and takes total=: it counts the planes

    Returns a new array of float32, masked if the phase is; a signal or a Dask array for such a phase. Pixels that are
    masked, infinite or not a number are left out and come back as they were. Each area that they enclose has its own
    offset: its first pixel keeps its value.
    Raises TypeError or ValueError, naming the parameter, for what it cannot use; warns of values beyond -pi to pi.

        unwrapped = zentrix.unwrap(np.angle(wave), mask=abs(wave) < 0.1)
    """
    limit, report = box_limit(box), flag("report", report)
    result, left_out = _checked_copy(phase, mask)
    wrapped = result.copy() if report or left_out is not None else None
    if left_out is not None:
        result[left_out] = np.nan
    host = running_core()
    for _, plane in planes(result, progress):
        _core.unwrap(host, plane, limit)
    told = _report(wrapped if left_out is None else np.where(left_out, np.nan, wrapped), result) if report else None
    if left_out is not None:
        result[left_out] = wrapped[left_out]
    if is_masked(phase):
        result = np.ma.MaskedArray(result, mask=left_out)
    return (result, told) if report else result


def _report(wrapped, result):
    labels = np.empty(result.shape, np.int32)
    numbers = [_core.report_on_unwrapping(wrapped[i], plane, labels[i]) for i, plane in planes(result)]
    fields = zip(*numbers)
    if result.ndim > 2:
        fields = (np.reshape(field, result.shape[:-2]) for field in fields)
    return UnwrapReport(*(field if result.ndim > 2 else field[0] for field in fields), labels)


def _checked_copy(phase, mask):
    """A contiguous copy as float32, and the pixels to leave out as an array of its shape, or None."""
    if isinstance(phase, (str, bytes, os.PathLike)):
        raise TypeError(f"The phase is a real array, not a file's name: numpy.load({shown(phase)}) reads one.")
    refuse_quantity(phase, "The phase is a real array in radians")
    try:
        values = np.asarray(phase)
    except ValueError:
        raise TypeError(f"The phase is a real array of shape (..., y, x), not {shown(phase)}.") from None
    if values.dtype.kind != "f":
        hint = "; numpy.angle(wave) is the phase of a wave" if values.dtype.kind == "c" else ""
        raise TypeError(f"The phase is a real array in radians, not {values.dtype} of shape {values.shape}{hint}.")
    if values.ndim < 2:
        hint = "; numpy.unwrap unwraps lines" if values.ndim == 1 else ""
        raise ValueError(f"The phase is an array of shape (..., y, x), not {values.shape}{hint}.")
    if values.size == 0:
        raise ValueError(f"The phase of shape {values.shape} has no pixel.")
    with np.errstate(over="ignore", invalid="ignore"):
        copy = np.array(values, np.float32, order="C")
    left_out = _left_out(phase, mask, copy.shape)
    beyond = np.abs(copy) > 3.1416
    beyond &= np.isfinite(copy)
    if left_out is not None:
        beyond &= ~left_out
    if beyond.any():
        count = np.count_nonzero(beyond)
        warn(f"{count} values are beyond -pi to pi; a wrapped phase in radians is expected.")
    return copy, left_out


def _left_out(phase, mask, shape):
    left_out = np.ma.getmaskarray(phase) if is_masked(phase) else None
    if mask is None:
        return left_out
    mask = as_mask(mask)
    check_mask(mask, shape)
    mask = np.broadcast_to(mask, shape)
    return mask if left_out is None else mask | left_out


def as_mask(mask):
    """The array that a mask is."""
    try:
        return np.asarray(mask)
    except ValueError:
        raise TypeError(f"{_MASK}, not {shown(mask)}.") from None


def check_mask(mask, shape):
    """Refuses arrays that are no mask for a phase of this shape."""
    if mask.dtype != bool:
        raise TypeError(f"{_MASK}, not {mask.dtype}.")
    if mask.shape not in (shape, shape[-2:]):
        raise ValueError(f"The mask of shape {mask.shape} does not fit the phase of shape {shape}.")


def box_limit(box):
    if box is None:
        return 0
    try:
        limit = operator.index(box)
    except TypeError:
        limit = None
    if limit is None or isinstance(box, (bool, np.bool_)):
        raise TypeError(f"box is a whole number of pixels, not {shown(box)}.")
    if not 0 <= limit < 2**31:
        raise ValueError(f"box is a number of pixels, 0 or more, not {shown(box)}.")
    return limit
