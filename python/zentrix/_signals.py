"""Signals of HyperSpy and Dask arrays as arguments of the functions for arrays.

A signal's pixel size and voltage are read from its axes and metadata, and the result has its axes and metadata. Neither
package is imported here: a signal is recognised by its members, a Dask array by the module of its type.
"""

import functools
import inspect

import numpy as np

from ._files import Image, with_scale
from ._numbers import number

#: unit of an axis -> nanometres
UNITS = {"pm": 1e-3, "a": 0.1, "å": 0.1, "angstrom": 0.1, "angstroms": 0.1, "nm": 1.0, "nanometer": 1.0}
UNITS |= {"um": 1e3, "µm": 1e3, "μm": 1e3, "micron": 1e3, "mm": 1e6, "m": 1e9}  # micro sign and Greek letter
#: The functions that zentrix.dask has, too.
_LAZY = ("aberrate", "correct", "unwrap")
#: Scales of both axes that differ by less are one pixel size: calibrations are stored with few digits.
SAME_SCALE = 1e-3


def takes_signals(function):
    """Lets a function of an array (..., y, x) take signals and Dask arrays, too."""
    parameters = inspect.signature(function).parameters
    first = next(iter(parameters))

    @functools.wraps(function)
    def call(*arguments, **keywords):
        data = arguments[0] if arguments else keywords.get(first)
        if is_signal(data):
            keywords = {first: data, **dict(zip(list(parameters)[: len(arguments)], arguments)), **keywords}
            return _on_signal(call, keywords.pop(first), keywords, parameters)
        if isinstance(data, Image):
            return _on_image(function, data, arguments, keywords, parameters)
        if _is_dask_array(data) and function.__name__ in _LAZY:
            if "report" in parameters:  # which may be given by position
                keywords, arguments = inspect.signature(function).bind(*arguments, **keywords).arguments, ()
            return _on_dask(function.__name__, arguments, keywords)
        return function(*arguments, **keywords)

    call.__signature__ = inspect.signature(function)
    return call


def is_signal(value):
    return hasattr(value, "axes_manager") and hasattr(value, "metadata") and hasattr(value, "data")


def pixel_of(signal):
    """The pixel size of an image signal in nm, or None if its axes have no unit of length."""
    axes = list(signal.axes_manager.signal_axes)
    if len(axes) != 2 or any(str(axis.units).lower() not in UNITS for axis in axes):
        return None
    return _pixel(axes)


def _is_dask_array(value):
    return type(value).__module__.split(".")[0] == "dask" and hasattr(value, "dask")


def _on_dask(name, arguments, keywords):
    from . import dask

    if keywords.pop("progress", None) is not None:
        raise TypeError(f"{name}() of a Dask array computes later: dask.diagnostics.ProgressBar shows its progress.")
    if keywords.pop("report", False):
        raise TypeError(f"{name}() of a Dask array has no report: call zentrix.{name} on the planes of interest.")
    return getattr(dask, name)(*arguments, **keywords)


def _on_image(function, image, arguments, keywords, parameters):
    first = next(iter(parameters))
    plain = np.asarray(image)
    if arguments:
        arguments = (plain, *arguments[1:])
    else:
        keywords = keywords | {first: plain}
    if "pixel" in parameters:
        if "pixel" not in keywords and image.pixel is not None:
            keywords["pixel"] = image.pixel
        if "kv" not in keywords and "wavelength" not in keywords and image.kv is not None:
            keywords["kv"] = image.kv
    result = function(*arguments, **keywords)
    if isinstance(result, tuple):
        return (with_scale(result[0], image), *result[1:])
    return with_scale(result, image)


def _on_signal(function, signal, keywords, parameters):
    axes = list(signal.axes_manager.signal_axes)
    if len(axes) != 2:
        raise ValueError(f"The signal has {len(axes)} signal axes; {function.__name__}() takes signals of two.")
    if "pixel" in parameters:
        if "pixel" not in keywords:
            keywords["pixel"] = _pixel(axes)
        if "kv" not in keywords and "wavelength" not in keywords:
            keywords["kv"] = _kilovolts(signal, function.__name__)
    # x and y of the signal may be any axes of its array; the function takes the last two.
    places = [axes[1].index_in_array, axes[0].index_in_array]
    result = function(np.moveaxis(signal.data, places, (-2, -1)), **keywords)
    if not isinstance(result, (np.ndarray, tuple)) and not _is_dask_array(result):
        return result  # no image, such as an Estimate
    array, *others = result if isinstance(result, tuple) else (result,)
    if array.ndim != signal.data.ndim:
        raise ValueError("A sweep gives more axes than the signal has: pass signal.data and the pixel size.")
    new = signal._deepcopy_with_new_data(np.moveaxis(array, (-2, -1), places))
    return (new, *others) if others else new


def _pixel(axes):
    """The pixel size in nm."""
    sizes = []
    for axis in axes:
        unit = str(axis.units)
        if unit.lower() not in UNITS:
            raise ValueError(f'The signal\'s axis "{axis.name}" has no unit of length, but "{unit}": give pixel in nm.')
        sizes.append(abs(number(axis.scale, "The scale of an axis is a number")) * UNITS[unit.lower()])
    if abs(sizes[0] - sizes[1]) > SAME_SCALE * sizes[0]:
        return tuple(sizes)  # refused with a text that has both
    return sizes[0]


def _kilovolts(signal, caller):
    energy = signal.metadata.get_item("Acquisition_instrument.TEM.beam_energy")
    if energy is None:
        raise TypeError(
            f"{caller}() needs kv: the signal's metadata has no Acquisition_instrument.TEM.beam_energy [keV]."
        )
    return energy
