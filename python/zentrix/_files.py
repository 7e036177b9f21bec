"""Image files, with the scale and the voltage that they have."""

import os
from typing import NamedTuple

import numpy as np

from . import _core
from ._numbers import number, shown

_HDF5 = b"\x89HDF\r\n\x1a\n"
_MOST_AXES = 3  # of the host's images


class Axis(NamedTuple):
    """The scale along one axis of an array: pixel i is at first + i * step."""

    step: float  #: from one pixel to the next, in `unit`; 0: not known
    first: float  #: position of pixel 0, in `unit`
    unit: str  #: as the file has it, "nm" or "1/nm" for example; may be empty


class Image(np.ndarray):
    """An array that `read` returns: a numpy.ndarray with the scale and the voltage of its file.

    Computations that keep the shape keep these, too; others return images without them. `correct`, `aberrate` and the
    other functions of this package use them where pixel and kv are not given.
    """

    axes: tuple = ()  #: an Axis for each axis of the array; empty if nothing is known
    kv: float | None = None  #: accelerating voltage [kV]
    name: str = ""  #: of the image, as the file has it

    def __new__(cls, array, axes=(), kv=None, name=""):
        image = np.asarray(array).view(cls)
        image.axes, image.kv, image.name = tuple(Axis(*axis) for axis in axes), kv, name
        return image

    def __array_finalize__(self, source):
        if isinstance(source, Image) and source.shape == self.shape:
            self.axes, self.kv, self.name = source.axes, source.kv, source.name

    def __reduce__(self):
        return Image, (np.asarray(self), self.axes, self.kv, self.name)

    @property
    def pixel(self):
        """The pixel size [nm], the same along y and x; None if it is not known or no length."""
        from ._signals import SAME_SCALE, UNITS  # which imports this module

        if len(self.axes) < 2:
            return None
        y, x = (axis.step * UNITS.get(axis.unit.lower(), 0.0) for axis in self.axes[-2:])
        return x if x > 0 and abs(x - y) <= SAME_SCALE * x else None


def read(path):
    """The image in a file, with its pixel size and voltage.

    path           DM3, DM4, MRC (.mrc), TIFF (.tif), .npy; with HyperSpy installed also what it reads, such as EMD and
                   .hspy. A .npy file has them in the record next to it, if a command wrote it.

    Returns an `Image`, which is a numpy.ndarray of shape (y, x) or (z, y, x) with `pixel` [nm], `kv` and `axes`.
    Raises FileNotFoundError; ValueError, naming the file and the reason.

        wave = zentrix.read("wave.dm4")
        sharp = zentrix.correct(wave, C1=-62)          # pixel and kv are those of the file
    """
    path = _path(path)
    with open(path, "rb") as file:  # raises what Python raises
        start = file.read(len(_HDF5))
    if start == _HDF5 or os.path.splitext(path)[1].lower() in (".zspy", ".blo", ".ser", ".emi"):
        return _read_with_hyperspy(path)
    array, name, axes, kilovolts = _core.read_file(path)
    axes = [Axis(*axis) for axis in axes[: array.ndim]][::-1]
    return Image(array, axes if any(axis.step for axis in axes) else (), kilovolts or None, name)


def write(path, array, *, pixel=None, kv=None):
    """Writes an array, whole or not at all.

    path           its extension is the format: .npy, .mrc, .tif, or .png for a picture in grey levels
    array          of one to three dimensions. MRC has no integers of 32 bits and no double precision, TIFF no complex
                   numbers (docs/files.md).
    pixel          pixel size [nm], a number or (y, x); default: that of an `Image`
    kv             accelerating voltage [kV]; default: that of an `Image`

    .tif has both, .mrc the pixel size. What .npy and .mrc do not have goes to a record next to the file, x.json, from
    which `read` and the commands take it. Pictures have none. Raises TypeError or ValueError, naming the file and the
    reason; an existing file then stays as it was.

        zentrix.write("phase.tif", phase, pixel=0.02, kv=300)
    """
    data = np.asanyarray(array)
    axes = list(data.axes) if isinstance(data, Image) else []
    if pixel is not None:
        axes = [Axis(0.0, 0.0, "")] * (data.ndim - 2) + [Axis(step, 0.0, "nm") for step in _steps(pixel)]
    if kv is None:
        kv = getattr(data, "kv", None)
    axes = axes[::-1] + [Axis(0.0, 0.0, "")] * (_MOST_AXES - len(axes))
    kilovolts = 0.0 if kv is None else number(kv, "kv is a number of kilovolts")
    _core.write_file(_path(path), np.asarray(data), axes, kilovolts)


def with_scale(result, image):
    """`result` as an Image with the scale of `image`, if it has the same last two axes."""
    if not isinstance(result, np.ndarray) or result.shape[-2:] != image.shape[-2:] or not image.axes:
        return result
    leading = (Axis(0.0, 0.0, ""),) * (result.ndim - len(image.axes))
    return Image(result, leading + image.axes[-result.ndim :], image.kv, image.name)


def _path(path):
    try:
        return os.fsdecode(path)
    except TypeError:
        raise TypeError(f"The path is a text or a path, not {shown(path)}.") from None


def _steps(pixel):
    try:
        y, x = pixel
    except TypeError:
        y = x = pixel
    steps = [number(step, "pixel is a number of nanometres or (y, x)") for step in (y, x)]
    if not all(0 < step < np.inf for step in steps):
        raise ValueError(f"pixel is above 0, not {shown(pixel)}.")
    return steps


def _read_with_hyperspy(path):
    try:
        import hyperspy.api as hyperspy
    except ImportError:
        raise ValueError(f"{path}: HyperSpy reads files of this format; it is not installed.") from None
    signals = hyperspy.load(path)
    if isinstance(signals, list):
        if len(signals) != 1:
            names = ", ".join(f'"{one.metadata.General.title}"' for one in signals)
            raise ValueError(f"{path} has {len(signals)} signals ({names}): use hyperspy.api.load and take one.")
        (signals,) = signals
    kv = signals.metadata.get_item("Acquisition_instrument.TEM.beam_energy")
    axes = [Axis(float(axis.scale), float(axis.offset), _unit(axis)) for axis in signals.axes_manager._axes]
    return Image(signals.data, axes, None if kv is None else float(kv), signals.metadata.General.title)


def _unit(axis):
    unit = axis.units
    return unit if isinstance(unit, str) and unit != "<undefined>" else ""
