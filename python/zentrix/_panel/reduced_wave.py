"""A wave at the size of the screen, by cropping its spectrum."""

import math

import numpy as np

_ROWS_AT_A_TIME = 256  # bounds the memory of the transform in double precision


def reduced_size(shape, most):
    """The largest (rows, columns) for a picture within `most` (rows, columns), in the wave's exact proportion.

    Rows and columns shrink by the same factor, so that the reduced pixels are square. A wave that fits, or whose sides
    have no suitable common divisor, keeps its size. Of the upper tenth of sizes one with small prime factors is taken,
    whose transforms are fast.
    """
    if all(side <= limit for side, limit in zip(shape, most)):
        return tuple(shape)
    divisor = math.gcd(*shape)
    units = tuple(side // divisor for side in shape)
    largest = min(limit // unit for limit, unit in zip(most, units))
    for times in range(largest, max(1, int(0.9 * largest)) - 1, -1):
        if all(_largest_prime(times * unit) <= 7 for unit in units):
            return tuple(times * unit for unit in units)
    return tuple(largest * unit for unit in units) if largest * max(units) >= 128 else tuple(shape)


def reduced_wave(wave, shape):
    """The wave with only the frequencies that fit into `shape`, sampled at this size. Its mean stays the same.

    wave    complex (rows, columns)
    Returns complex64. The frequencies are those of the middle of the wave's centred spectrum.
    """
    if tuple(shape) == wave.shape:
        return np.array(wave, np.complex64, order="C")
    rows, columns = shape
    kept_columns, kept_rows = _kept(wave.shape[1], columns), _kept(wave.shape[0], rows)
    narrow = np.empty((wave.shape[0], columns), np.complex128)
    for first in range(0, wave.shape[0], _ROWS_AT_A_TIME):
        part = slice(first, first + _ROWS_AT_A_TIME)
        narrow[part] = np.fft.fft(wave[part], axis=1)[:, kept_columns]
    spectrum = np.fft.fft(narrow, axis=0)[kept_rows]
    spectrum *= rows * columns / wave.size
    return np.fft.ifft2(spectrum).astype(np.complex64, order="C")


def _kept(size, kept):
    """Indices of the lowest frequencies, in the order of a transform of `kept` elements."""
    return np.fft.ifftshift(np.arange(kept) - kept // 2) % size


def reduced_marks(marks, shape):
    """A mask at a reduced size; a pixel is marked if one of the pixels in its place is."""
    small = np.zeros(shape, bool)
    y, x = np.nonzero(marks)
    small[y * shape[0] // marks.shape[0], x * shape[1] // marks.shape[1]] = True
    return small


def _largest_prime(number):
    factor, largest = 2, 1
    while number > 1:
        while number % factor == 0:
            largest, number = factor, number // factor
        factor += 1
    return largest
