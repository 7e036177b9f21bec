"""Waves from off-axis holograms."""

import os
from typing import Any, NamedTuple

import numpy as np

from . import _core
from ._correct import running_core
from ._files import Image
from ._numbers import as_scalar, flag, is_masked, is_pair, number, refuse_quantity, shown, word
from ._optics import pixel_size
from ._signals import is_signal, pixel_of
from ._user_warning import warn


class HologramReport(NamedTuple):
    """What was found in a hologram. Lengths are in pixels of the hologram, or of its transform where that is said."""

    sideband: tuple  #: (right, down) from the centre of the transform, to a fraction of a pixel
    height: float  #: modulus of the sideband's peak over that of its surroundings
    distinction: Any  #: height over that of the next peak; None if the sideband was given
    doubtful: bool  #: whether the next peak is more than half as high, or no clear peak is at the given position
    spacing: float  #: of the fringes
    angle: float  #: direction across the fringes [degrees], counter-clockwise on the displayed image
    contrast: Any  #: of the fringes, 0 to 1; None if they are stronger than the mean, which was then subtracted
    reference_contrast: Any  #: the same of the reference, or None
    radius: float  #: of the filter [pixels of the transform along x]
    resolution: float  #: the finest period that the filter passes by half or more
    replaced: int  #: outliers of hologram and reference, with despike=True
    weak: int  #: pixels where the reference is too weak to divide by
    reduction: float  #: pixels of the hologram per pixel of the wave
    pixel: Any  #: pixel size of the wave [nm]; None if that of the hologram is not known


def hologram(
    hologram,
    reference=None,
    *,
    sideband="auto",
    radius=None,
    window="disk",
    flank=None,
    full_size=False,
    despike=False,
    pixel=None,
    report=False,
):
    """The wave of an off-axis hologram, or the waves of a stack of holograms that share their fringes.

    hologram       real or integer array (y, x) or (z, y, x), not modified; also a signal of HyperSpy. The pixel size of a
                   signal, or of an Image that zentrix.read returned, is used unless it is given here.
    reference      hologram of the vacuum (y, x). The wave is divided by its wave; where that is weaker than a tenth of
                   its median, the result fades to 0. None: the carrier is removed to a fraction of a pixel, and each
                   wave is divided by the median of its modulus.
    sideband       "auto": the one in the lower half of the centred transform; "other": the opposite one, whose wave is
                   the complex conjugate; or (x, y), pixels right and down from the centre of the transform
    radius         of the filter [pixels of the transform along x]. None: half way to the nearest other band
    window         shape of the filter: "disk" with a soft flank, "hann" or "gaussian"
    flank          width of the disk's flank [as radius], 0: sharp. None: 12 % of the radius
    full_size      True: the wave has as many pixels as the hologram; False: as few as the filter needs
    despike        True: replace pixels that stand out from their neighbours (hot and dead pixels, single dead rows,
                   X-rays) by the median of the 3 x 3 pixels around them
    pixel          pixel size of the hologram [nm], for the report
    report         True: return (wave, HologramReport)

    Returns a new array of complex64.
    Raises TypeError or ValueError, naming the parameter, for what it cannot use; ScriptError if no fringes are found or
    the filter does not fit. Warns if the sideband is hardly higher than another peak, or if no clear peak
    is at the given position.

        wave, found = zentrix.hologram(holo, vacuum, pixel=0.05, report=True)
        corrected = zentrix.correct(wave, kv=300, pixel=found.pixel, C1=-62)
        phase = np.degrees(zentrix.unwrap(np.angle(corrected)))
    """
    if pixel is None:
        pixel = pixel_of(hologram) if is_signal(hologram) else hologram.pixel if isinstance(hologram, Image) else None
    pixel = None if pixel is None else pixel_size(pixel)
    data = _checked(hologram, "hologram", (2, 3))
    vacuum = None if reference is None else _checked(reference, "reference", (2,))
    if vacuum is not None and vacuum.shape != data.shape[-2:]:
        raise ValueError(f"The reference of shape {vacuum.shape} does not fit the hologram of shape {data.shape}.")
    word("window", window, ("disk", "hann", "gaussian"))
    radius = None if radius is None else number(radius, "radius is a number of pixels of the transform")
    flank = None if flank is None else number(flank, "flank is a number of pixels of the transform")
    if flank is not None and window != "disk":
        raise ValueError(f'flank is that of window="disk"; "{window}" has none.')
    full_size, despike, report = flag("full_size", full_size), flag("despike", despike), flag("report", report)
    which, at = _sideband(sideband)
    settings = which, at, radius, window, flank, full_size, despike
    wave, found = _core.reconstruct(running_core(), data, vacuum, *settings)
    found["pixel"] = None if pixel is None else pixel * found["reduction"]
    doubt = found.pop("doubt")
    about = HologramReport(**found, doubtful=bool(doubt))
    if doubt:
        warn(f"{doubt[0].upper()}{doubt[1:]}; sideband=(x, y) chooses another place.")
    return (wave, about) if report else wave


def _sideband(value):
    if is_pair(value):
        x, y = (number(part, "sideband is (x, y) in pixels of the transform") for part in value)
        return "auto", complex(x, y)
    if isinstance(as_scalar(value), (float, complex)):
        raise TypeError(f'sideband is "auto", "other" or (x, y), not {shown(value)}.')
    return word("sideband", value, ("auto", "other")), None


def _checked(value, name, dimensions):
    """A contiguous array of a type that the host has."""
    if isinstance(value, (str, bytes, os.PathLike)):
        raise TypeError(f"The {name} is a real array, not a file's name: numpy.load({shown(value)}) reads one.")
    if is_signal(value):
        value = np.moveaxis(value.data, [axis.index_in_array for axis in value.axes_manager.signal_axes], (-1, -2))
    refuse_quantity(value, f"The {name} is a real array")
    if is_masked(value):
        raise TypeError(f"The {name} is a masked array: fill the masked pixels, for example with their neighbours' mean.")
    try:
        array = np.asarray(value)
    except ValueError:
        raise TypeError(f"The {name} is a real array of shape (y, x), not {shown(value)}.") from None
    if array.dtype.kind == "c":
        raise TypeError(f"The {name} is a real array, not {array.dtype}: this is a wave already.")
    if array.dtype.kind not in "iuf":
        raise TypeError(f"The {name} is a real array, not {array.dtype}.")
    if array.ndim not in dimensions:
        expected = "(y, x) or (z, y, x)" if 3 in dimensions else "(y, x)"
        raise ValueError(f"The {name} is an array of shape {expected}, not {array.shape}.")
    if array.ndim == 3 and array.shape[-1] in (3, 4):
        raise ValueError(
            f"The {name} of shape {array.shape} looks like a colour picture: convert it to greys, or take one channel."
        )
    if array.size == 0:
        raise ValueError(f"The {name} of shape {array.shape} has no pixel.")
    narrow = array.dtype.kind == "f" and array.dtype.itemsize == 4 or array.dtype.itemsize <= 2 and array.dtype.kind != "f"
    return np.ascontiguousarray(array, array.dtype.newbyteorder("=") if narrow else np.float64)
