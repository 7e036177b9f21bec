"""What a row of the table is."""

import ctypes
from collections.abc import Callable, Mapping
from dataclasses import dataclass

import numpy as np

#: Reads a stretch of memory as fast as the C library can; the byte that it looks for is not there.
_memchr = ctypes.CDLL(None).memchr
_memchr.argtypes = ctypes.c_void_p, ctypes.c_int, ctypes.c_size_t


@dataclass(frozen=True)
class Limit:
    """The least that a function has to do: `call(images)` does it."""

    name: str
    call: Callable


def copy(read, written):
    """Copying as many bytes as the function moves. `read`, `written`: bytes of a pixel."""

    def call(images):
        bytes_copied = images.pixels * (read + written) // 2
        np.copyto(images.to(np.uint8, bytes_copied), images.room(np.uint8, bytes_copied))

    return Limit("copy", call)


def read(count):
    """Reading `count` bytes of each pixel."""

    def call(images):
        block = images.room(np.uint8, images.pixels * count)
        _memchr(block.ctypes.data, 1, block.size)

    return Limit("read", call)


def _sine_and_cosine(images):
    np.sin(images.real, out=images.room(np.float32))
    np.cos(images.real, out=images.room(np.float32))


#: NumPy's two functions in single precision, which is the most expensive part of a complex exponential.
SINE_AND_COSINE = Limit("sin + cos", _sine_and_cosine)


def agree(ours, theirs, tolerance, margin=0):
    """Whether two results, arrays or tuples of arrays and numbers, differ by at most `tolerance` of the greatest value.

    margin  pixels at the border of an image that are not compared
    """
    if isinstance(ours, (tuple, list)):
        return len(ours) == len(theirs) and all(map(lambda a, b: agree(a, b, tolerance, margin), ours, theirs))
    ours, theirs = np.asarray(ours), np.asarray(theirs)
    if margin and ours.ndim >= 2:
        ours, theirs = (a[..., margin:-margin, margin:-margin] for a in (ours, theirs))
    if tolerance == 0:
        return np.array_equal(ours, theirs)
    return ours.shape == theirs.shape and np.abs(ours - theirs).max() <= tolerance * np.abs(theirs).max()


@dataclass(frozen=True)
class Row:
    """A script function in one use.

    name       as the page shows it
    ours       ours(zx, images) calls the function and returns its result
    peers      name of a peer -> its call, with the images as the only argument
    limit      the least that the function has to do
    tolerance  greatest difference, relative to the greatest value; 0: equal
    margin     width of the border [pixel] where the peers' rule is a different one
    why        the reason, shown where a peer is faster
    right      right(images, result) checks a result that the peers cannot confirm; they are then not compared
    switched   whether the call runs in this process, so that the plain forms can be timed
    """

    name: str
    ours: Callable
    peers: Mapping[str, Callable]
    limit: Limit
    tolerance: float = 0
    margin: int = 0
    why: str = ""
    right: Callable | None = None
    switched: bool = True


@dataclass(frozen=True)
class Topic:
    """A table of the page. `unit`: of the times, "ns/pixel" or "ms"."""

    title: str
    rows: tuple
    note: str = ""
    unit: str = "ns/pixel"
