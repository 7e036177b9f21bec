"""Wave transfer function, shifter, unwrapping."""

import numpy as np

from .peers import restoration
from .row import SINE_AND_COSINE, Row, Topic, copy

#: All coefficients of the wave transfer function; together they give phases of some hundred radians at the edge.
LAMBDA, STEP = 0.025, 0.4
ROUND = dict(c20=2e5, c40=-1.5e8, c60=3e10)
ORDERS = dict(
    c22=3e4 + 1e4j, c31=5e5 - 2e5j, c33=-4e5 + 3e5j, c42=2e7 + 1e7j, c44=1e7 - 2e7j, c51=4e8 + 1e8j, c53=1e8 + 5e8j,
    c55=-2e8 + 3e8j, c62=2e9 + 5e9j, c64=4e9 + 1e9j, c66=-3e9 + 2e9j,
)  # fmt: skip
SPREADS = dict(c2s=40.0, bdiv=2e-4, vib=0.2)
BLOCK = 2**15  #: pixels that NumPy computes at once, so that its intermediate results stay in the cache


def transfer(envelope):
    def call(zx, images):
        lens = ROUND | ORDERS
        names = "c20 c22 c40 c60 c31 c33 c42 c44 c51 c53 c55 c62 c64 c66".split()
        return zx.ZXWTFMulDLL(
            images.wave, LAMBDA, STEP, *map(lens.get, names), *SPREADS.values(), envelope, 0j, images.to(np.complex64)
        )

    return call


def numpy_transfer(envelope):
    """The same in NumPy, with single-precision arrays, a block of rows at a time."""
    c = {name: np.complex64(value) for name, value in ORDERS.items()}
    c20, c40, c60 = (np.float32(value) for value in ROUND.values())
    c2s, bdiv, vib = (np.float32(value) for value in SPREADS.values())

    def call(images):
        n, result = images.width, images.peer_to(np.complex64)
        u = ((np.arange(n) / n - 0.5) * (LAMBDA / STEP)).astype(np.float32)
        vibration = (2 * (np.pi * vib / n / STEP) ** 2 * (np.arange(n) - n // 2.0) ** 2).astype(np.float32)
        rows = max(1, BLOCK // n)
        for y in range(0, n, rows):
            inside = slice(y, min(y + rows, n))
            w = u + np.complex64(1j) * u[inside, None]
            s = w.real**2 + w.imag**2
            high = ((c["c66"] * w + c["c55"]) * w + (c["c64"] * s + c["c44"])) * w + (c["c53"] * s + c["c33"])
            low = (high * w + ((c["c62"] * s + c["c42"]) * s + c["c22"])) * w + (c["c51"] * s + c["c31"]) * s
            phase = -((c20 + (c40 + c60 * s) * s) * s + (low * w).real)
            factor = np.empty_like(w)
            np.cos(phase, out=factor.real)
            np.sin(phase, out=factor.imag)
            if envelope:
                gradient = (2 * c20 + (4 * c40 + 6 * c60 * s) * s) * w
                exponent = (gradient.real**2 + gradient.imag**2) * (bdiv * bdiv / 2) + (s * c2s) ** 2 / 2
                factor *= np.exp(-np.minimum(exponent + vibration + vibration[inside, None], np.float32(50)))
            np.multiply(images.wave[inside], factor, out=result[inside])
        return result

    return call


def shifted(zx, images, wave, result):
    return zx.ZXImageShifterForSemper(wave, 0, 0, float(images.half), float(images.half), 1.0, result)


def numpy_shifted(wave, result):
    np.conjugate(wave, out=result)
    np.negative(result[::2, 1::2], out=result[::2, 1::2])
    np.negative(result[1::2, ::2], out=result[1::2, ::2])
    return result


def whole_turns(phase):
    """Checks that a result differs from `phase(images)` by whole turns."""

    def right(images, result):
        turns = (result - phase(images)) / np.float32(2 * np.pi)
        return np.abs(turns - np.round(turns)).max() < 1e-3

    return right


def unwrapped_by_skimage(phase):
    """With the first pixel as it was, like ours; scikit-image starts elsewhere."""
    result = restoration.unwrap_phase(phase)
    return result - (result[0, 0] - phase[0, 0])


TOPICS = (
    Topic("Waves", (
        Row("`WTFMulDLL`, all coefficients", transfer(0), {"NumPy, in blocks": numpy_transfer(False)}, SINE_AND_COSINE,
            2e-3),
        Row("`WTFMulDLL`, with the envelope", transfer(1), {"NumPy, in blocks": numpy_transfer(True)}, SINE_AND_COSINE,
            2e-3),
        Row("`ImageShifterForSemper`, Complex 8",
            lambda zx, d: shifted(zx, d, d.wave, d.to(np.complex64)),
            {"NumPy": lambda d: numpy_shifted(d.wave, d.peer_to(np.complex64))}, copy(8, 8)),
        Row("`ImageShifterForSemper`, Complex 16",
            lambda zx, d: shifted(zx, d, d.wave16, d.to(np.complex128)),
            {"NumPy": lambda d: numpy_shifted(d.wave16, d.peer_to(np.complex128))}, copy(16, 16)),
    )),
    Topic("Unwrapping", (
        Row("`Goldstain`, smooth phase", lambda zx, d: zx.ZXGoldstain(d.phase, 0),
            {"scikit-image": lambda d: unwrapped_by_skimage(d.phase),
             "NumPy": lambda d: np.unwrap(np.unwrap(d.phase), axis=0)}, copy(4, 4), 1e-5),
        Row("`Goldstain`, noise of 1 rad", lambda zx, d: zx.ZXGoldstain(d.noisy_phase, 0),
            {"scikit-image": lambda d: restoration.unwrap_phase(d.noisy_phase)}, copy(4, 4),
            right=whole_turns(lambda d: d.noisy_phase)),
    ), "The first result is compared with those of the peers. With noise, where they rightly differ, it must differ"
       " from the phase by whole turns."),
)  # fmt: skip
