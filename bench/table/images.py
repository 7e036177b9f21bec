"""The images of one size that the rows of the table use."""

import tempfile
from functools import cached_property
from pathlib import Path

import numpy as np

DEPTH = 16  #: planes of a volume, which has as many elements as the image


class Images:
    """Sources are made when they are first used; `to` and `peer_to` are the destinations of the library and the peers.

    width  side length of the square images, a multiple of 4
    """

    def __init__(self, width):
        self.width, self.half = width, width // 2
        self.pixels = width * width
        self._random = np.random.default_rng(1)
        self._destinations = {}

    def _normal(self, dtype):
        return self._random.standard_normal((self.width, self.width), np.float32).astype(dtype)

    @cached_property
    def real(self):
        return self._normal(np.float32)

    @cached_property
    def real8(self):
        return self.real.astype(np.float64)

    @cached_property
    def positive(self):
        return np.abs(self._normal(np.float32)) + np.float32(0.01)

    @cached_property
    def positive8(self):
        return self.positive.astype(np.float64)

    @cached_property
    def wave(self):
        return self.real + 1j * self._normal(np.complex64)

    @cached_property
    def wave16(self):
        return self.wave.astype(np.complex128)

    @cached_property
    def flipped(self):
        return np.ascontiguousarray(self.wave[::-1])

    @cached_property
    def uint8(self):
        return self._random.integers(0, 256, (self.width, self.width), np.uint8)

    @cached_property
    def uint16(self):
        return self._random.integers(0, 65536, (self.width, self.width), np.uint16)

    @cached_property
    def uint32(self):
        return self._random.integers(0, 2**32, (self.width, self.width), np.uint32)

    @cached_property
    def volume(self):
        return self.real.reshape(DEPTH, self.width // 4, self.width // 4)

    @cached_property
    def curve(self):
        return np.random.default_rng(2).uniform(1, 2, (1, self.width)).astype(np.float32)

    @cached_property
    def surface(self):
        """A smooth phase of several turns [rad]."""
        y, x = np.ogrid[: self.width, : self.width]
        return (0.02 * x + 30 * np.sin(6 * x / self.width) * np.cos(5 * y / self.width)).astype(np.float32)

    @cached_property
    def phase(self):
        return wrapped(self.surface)

    @cached_property
    def noisy_phase(self):
        return wrapped(self.surface + self.real)

    def file(self, name):
        """The path of a file that is deleted with the images."""
        return Path(self._folder.name) / name

    @cached_property
    def _folder(self):
        return tempfile.TemporaryDirectory(prefix="zentrix-table-")

    def to(self, dtype, *shape):
        return self._destination("ours", dtype, shape or (self.width, self.width))

    def peer_to(self, dtype, *shape):
        return self._destination("theirs", dtype, shape or (self.width, self.width))

    def room(self, dtype, *shape):
        """A third destination, for results of two images and for intermediate ones."""
        return self._destination("room", dtype, shape or (self.width, self.width))

    def _destination(self, whose, dtype, shape):
        key = whose, dtype, shape
        if key not in self._destinations:
            self._destinations[key] = np.zeros(shape, dtype)
        return self._destinations[key]


def wrapped(phase):
    """The phase within -pi to pi, in single precision."""
    return np.float32(phase - 2 * np.pi * np.round(phase / (2 * np.pi)))
