"""The phase contrast transfer function sin(chi), damped by the envelope, for the overlay."""

import math
from functools import lru_cache

import numpy as np

from . import library

_SIZE = 240  # pixels of the square
_RADII, _AZIMUTHS = 300, 72
_LARGEST_STEP = 2 * math.pi / 3  # fewer than three samples a ring are not shown


class Transfer:
    """What the overlay shows; all of its numbers come from the library.

    square      (240, 240), that of zentrix.ctf: frequency -limit to limit along each axis, row 0 on top. Not a number
                where chi turns by more than 2 pi / 3 from one pixel to the next
    frequency   (300,) [1/nm], 0 to limit
    profile     (300,) mean of sin(chi) times the envelope over the directions; not a number where a ring is
                undersampled
    envelope    (300,) mean of the envelope over the directions
    limit       the largest frequency along an axis, 1 / (2 pixel) [1/nm]
    """

    def __init__(self, optics):
        """optics   keywords of zentrix.ctf"""
        self.limit = 0.5 / optics["pixel"]
        square, polar, self.frequency = _frequencies(self.limit)
        values = library.contrast((_SIZE, _SIZE), optics)
        lens = library.Lens(optics)
        self.square = np.where(_undersampled(lens.chi(square)), np.nan, values)

        transfer, chi = lens.transfer(polar), lens.chi(polar)
        self.envelope = np.abs(transfer).mean(axis=0)
        along, around = np.diff(chi, axis=1, prepend=0), np.diff(chi, axis=0, append=chi[:1])
        steps = np.maximum(np.abs(along).max(axis=0), np.abs(around).max(axis=0))
        self.profile = np.where(steps > _LARGEST_STEP, np.nan, -transfer.imag.mean(axis=0))


@lru_cache(maxsize=4)
def _frequencies(limit):
    """Of the square (240, 240) and of the rings (72, 300), right + i up [1/nm], and the radii of the rings."""
    axis = (np.arange(_SIZE) - _SIZE // 2) * (2 * limit / _SIZE)
    radius = np.linspace(0, limit, _RADII)
    directions = np.exp(2j * math.pi * np.arange(_AZIMUTHS) / _AZIMUTHS)
    return axis - 1j * axis[:, None], np.outer(directions, radius), radius


def _undersampled(chi):
    marks = np.zeros(chi.shape, bool)
    along_y, along_x = (np.abs(np.diff(chi, axis=axis)) > _LARGEST_STEP for axis in (0, 1))
    marks[1:] |= along_y
    marks[:-1] |= along_y
    marks[:, 1:] |= along_x
    marks[:, :-1] |= along_x
    return marks
