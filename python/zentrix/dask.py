"""`correct`, `aberrate` and `unwrap` on Dask arrays, chunk by chunk: for stacks beyond memory, and for clusters.

    import dask.array, zentrix.dask
    waves = dask.array.from_zarr("waves.zarr")                       # (n, y, x)
    zentrix.dask.correct(waves, kv=300, pixel=0.02, C1=-62).to_zarr("corrected.zarr")

Nothing is computed before the result is asked for. Every scheduler gives the same bits as `zentrix.correct` on each
plane. A process computes one plane at a time, so use processes, not threads, for more cores: docs/clusters.md.
"""

import functools
import math

import numpy as np

import zentrix

from ._numbers import shown, word
from ._optics import Optics, takes_optics
from ._phases import as_mask, box_limit, check_mask
from ._wave_arrays import NAN_RULES

try:
    import dask.array as da
except ImportError as _missing:
    raise ImportError(
        "zentrix.dask needs Dask: python3 -m pip install 'dask[array]', or Debian's python3-dask."
    ) from _missing

__all__ = ["aberrate", "correct", "unwrap"]


@takes_optics
def correct(wave, *, nan="refuse", **optics):
    """`zentrix.correct` on a Dask array (..., y, x) of complex elements.

    wave           image axes that are split into chunks are joined first. Leading axes keep their chunks, unless image
                   axes are joined: Dask then chooses chunks of its configured size.
    nan            as in `zentrix.correct`; pixels are checked when their chunk is computed
    OPTICS

    Returns a Dask array of complex64. Raises TypeError or ValueError for wrong parameters at once.
    """
    return _multiplied(zentrix.correct, wave, nan, optics)


@takes_optics
def aberrate(wave, *, nan="refuse", **optics):
    """`zentrix.aberrate` on a Dask array (..., y, x) of complex elements.

    wave, nan      as in `correct`
    OPTICS

    Returns and raises the same as `correct`.
    """
    return _multiplied(zentrix.aberrate, wave, nan, optics)


def unwrap(phase, mask=None, box=None):
    """`zentrix.unwrap` on a Dask array (..., y, x) of real elements.

    phase          image axes that are split into chunks are joined first, as in `correct`
    mask           boolean array, True where a pixel is left out: of the shape of the phase or of a plane
    box            as in `zentrix.unwrap`

    Returns a Dask array of float32. Raises TypeError or ValueError for wrong parameters at once.
    """
    box_limit(box)
    phase = _whole_planes("unwrap", "phase", phase, "f")
    if mask is None:
        return da.map_blocks(zentrix.unwrap, phase, box=box, dtype=np.float32, meta=_meta(phase.ndim, np.float32))
    if not isinstance(mask, da.Array):
        mask = da.asarray(as_mask(mask))
    check_mask(mask, phase.shape)
    mask = mask.rechunk(phase.chunks[-mask.ndim :])
    return da.map_blocks(zentrix.unwrap, phase, mask, box=box, dtype=np.float32, meta=_meta(phase.ndim, np.float32))


def _multiplied(function, wave, nan, optics):
    word("nan", nan, NAN_RULES)
    sweep = Optics(function.__name__, optics).shape
    wave = _whole_planes(function.__name__, "wave", wave, "c")
    return da.map_blocks(
        functools.partial(function, nan=nan, **optics),
        wave,
        chunks=tuple((size,) for size in sweep) + wave.chunks,
        new_axis=list(range(len(sweep))) or None,
        dtype=np.complex64,
        meta=_meta(len(sweep) + wave.ndim, np.complex64),
    )


def _whole_planes(caller, name, array, kind):
    """The array with each plane in one chunk."""
    if not isinstance(array, da.Array):
        raise TypeError(
            f"zentrix.dask.{caller} takes a Dask array, not {shown(array)}: dask.array.from_array makes one, and "
            f"zentrix.{caller} takes NumPy arrays."
        )
    meant = {"c": "complex", "f": "real"}[kind]
    if array.dtype.kind != kind or array.ndim < 2:
        given = f"{array.dtype} of shape {array.shape}"
        raise TypeError(f"The {name} is a {meant} array of shape (..., y, x), not {given}.")
    if any(math.isnan(size) for size in array.shape):
        raise ValueError(f"The {name} has chunks of unknown size: call compute_chunk_sizes() first.")
    if array.numblocks[-2:] == (1, 1):
        return array
    return array.rechunk({**dict.fromkeys(range(array.ndim - 2), "auto"), array.ndim - 2: -1, array.ndim - 1: -1})


def _meta(dimensions, dtype):
    return np.empty((0,) * dimensions, dtype)
