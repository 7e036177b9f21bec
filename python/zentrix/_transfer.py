"""What a lens does to each frequency: wavelength, wave transfer function, contrast transfer function."""

import operator
from typing import Any, NamedTuple

import numpy as np

from . import _core
from ._correct import running_core
from ._numbers import flag, number, reals, shown
from ._optics import Optics, kilovolts, takes_optics


class RadialCTF(NamedTuple):
    """The contrast transfer function against the frequency."""

    q: Any  #: frequencies (n,) [1/nm]
    values: Any  #: (..., n), axes of a sweep first


class ImageCTF(NamedTuple):
    """The contrast transfer function on the spectrum of an image, zero frequency in the middle."""

    qx: Any  #: frequencies of the columns (x,), growing to the right [1/nm]
    qy: Any  #: frequencies of the rows (y,), growing downwards [1/nm]
    values: Any  #: (..., y, x), axes of a sweep first


def wavelength(kv):
    """The relativistic wavelength [nm] of electrons after an accelerating voltage of `kv` [kV], a number or an array.

    Constants of CODATA 2018. Raises ValueError for a voltage that is not positive, and above 3000 kV.

        >>> round(zentrix.wavelength(300), 7)
        0.0019687
    """
    values = np.asarray(reals(kv, "kv is the accelerating voltage in kV"))
    result = np.array([_core.electron_wavelength(kilovolts(voltage, slow=True)) for voltage in values.ravel()])
    return result.reshape(values.shape) if values.ndim else float(result[0])


@takes_optics
def transfer_function(shape, *, correcting=False, shifted=True, **optics):
    """The wave transfer function of a lens: what `aberrate` multiplies the spectrum of a wave by, envelope included.

    shape          (height, width) of the wave
    correcting     True: what `correct` multiplies by
    shifted        True: zero frequency in the middle, at (height // 2, width // 2), frequencies increasing to the
                   right and downwards; False: in the order of numpy.fft.fft2
    OPTICS

    Returns a new array of complex64: the axes of the sweep, then (height, width). The library's
    ZXWTFMulDLL computes it.

        corrected = np.fft.ifft2(np.fft.fft2(wave) * zentrix.transfer_function(
            wave.shape, correcting=True, shifted=False, kv=300, pixel=0.02, C1=-62))
    """
    remove, centred = flag("correcting", correcting), flag("shifted", shifted)
    return _transfer_function(_size(shape), Optics("transfer_function", optics), remove, centred)


@takes_optics
def ctf(shape=None, *, q=None, along=None, **optics):
    """The contrast transfer function of a lens for weak phase objects, sin(chi) times the envelope.

    It is the negative imaginary part of `transfer_function`. A positive phase appears darker than its surroundings in
    the image where the function is negative, as at low frequencies of an underfocused lens, C1 < 0.

    shape          (height, width): the function on the spectrum of an image. None: against the frequency
    q              frequencies [1/nm], 0 or more, one axis. Default: 512 from zero to 1 / (2 pixel)
    along          direction of these frequencies [degrees], counter-clockwise on the displayed image. Default: the mean
                   over 360 directions
    OPTICS

    If `q` is given, `pixel` is not needed.

    Returns ImageCTF(qx, qy, values), values float32, if `shape` is given, otherwise RadialCTF(q, values), float64.

        q, values = zentrix.ctf(kv=300, pixel=0.05, C1=np.linspace(-60, -40, 3), C3=1.2, focus_spread=4)
        plt.plot(q, values.T)                                        # a line for each element of the sweep
    """
    if shape is not None:
        if q is not None or along is not None:
            raise TypeError("ctf() takes either shape, or q and along.")
        size = _size(shape)
        lens = Optics("ctf", optics)
        qy, qx = (np.fft.fftshift(np.fft.fftfreq(n, lens.pixel)) for n in size)
        return ImageCTF(qx, qy, -_transfer_function(size, lens, False, True).imag)
    if q is not None:
        q = _frequencies(q)
        optics.setdefault("pixel", 0.5 / max(q.max(), 1e-9))
    lens = Optics("ctf", optics)
    if q is None:
        q = np.linspace(0, 0.5 / lens.pixel, 512)
    directions = range(360) if along is None else [number(along, "along is a direction in degrees")]
    values = np.empty(lens.shape + q.shape)
    for index, setting in lens.settings():
        values[index] = _core.radial_contrast(setting, q, list(directions), lens.envelope)
    return RadialCTF(q, values)


def _transfer_function(size, lens, remove, shifted):
    result, host = np.ones(lens.shape + size, np.complex64), running_core()
    for index, setting in lens.settings():
        _core.multiply_by_transfer(host, result[index], setting, remove, lens.envelope)
    return result if shifted else np.fft.ifftshift(result, axes=(-2, -1))


def _size(shape):
    try:
        height, width = (operator.index(side) for side in shape)
    except (TypeError, ValueError):
        raise TypeError(f"shape is (height, width), not {shown(shape)}.") from None
    if min(height, width) < 1:
        raise ValueError(f"shape is (height, width), 1 or more each, not {shown(shape)}.")
    return height, width


def _frequencies(q):
    takes = "q is an array of frequencies in 1/nm"
    values = np.atleast_1d(reals(q, takes))
    if values.ndim > 1:
        raise ValueError(f"{takes} with one axis, not of shape {values.shape}.")
    if values.min() < 0:
        raise ValueError(f"{takes}, 0 or more; {values.min()} is negative (along gives a direction).")
    if values.max() > 5000:  # the finest pixel
        raise ValueError(f"{takes}, 5000 or less; {values.max():.15g} is usually in another unit.")
    return values
