"""Element-wise operations."""

import numpy as np

from zentrix import Ref

from .row import SINE_AND_COSINE, Row, Topic, copy

WHY_MODULUS = "NumPy has wider vectors; both wait for memory in large images."
WHY_FUNCTION = (
    "The function is computed in double precision and rounded once, which gives the same bits on every platform; "
    "NumPy's vectors compute in single precision, to about 2 units in the last place."
)
WHY_LIBRARY = "Real 8 is computed by the C library's function, an element at a time; NumPy has a vector form."


def modulus_and_phase(zx, images):
    rho, theta = Ref(images.to(np.float32)), Ref(images.room(np.float32))
    zx.ZXAbsArg(images.wave, rho, theta)
    return rho.value, theta.value


def numpy_modulus_and_phase(images):
    rho, theta = images.peer_to(np.float32), images.peer_to(np.float32, 1, images.width, images.width)[0]
    np.abs(images.wave, out=rho)
    np.arctan2(images.wave.imag, images.wave.real, out=theta)
    return rho, theta


def numpy_polar(images):
    result = images.peer_to(np.complex64)
    np.cos(images.real, out=result.real)
    np.sin(images.real, out=result.imag)
    result *= images.positive
    return result


def numpy_norm(images):
    result, wave = images.peer_to(np.float32), images.wave
    np.multiply(wave.real, wave.real, out=result)
    result += np.multiply(wave.imag, wave.imag, out=images.room(np.float32))
    result *= np.float32(2)
    return result


def numpy_direction(images):
    modulus = np.abs(images.wave, out=images.room(np.float32))
    return np.divide(images.wave, modulus, out=images.peer_to(np.complex64))


def unary(name, function, image, dtype, call, bytes_moved, tolerance, why):
    """A row for `function` of the NumPy function `call`; `image` is the name of the source."""
    return Row(
        name,
        lambda zx, d: getattr(zx, function)(getattr(d, image), d.to(dtype)),
        {"NumPy": lambda d: call(getattr(d, image), out=d.peer_to(dtype))},
        copy(*bytes_moved), tolerance, why=why,
    )  # fmt: skip


TOPICS = (
    Topic("Element-wise operations", (
        unary("`Abs`, Complex 8", "ZXAbs", "wave", np.float32, np.abs, (8, 4), 1e-6, WHY_MODULUS),
        unary("`Abs`, Complex 16", "ZXAbs", "wave16", np.float64, np.abs, (16, 8), 1e-14, WHY_MODULUS),
        Row("`AbsArg`, Complex 8", modulus_and_phase, {"NumPy": numpy_modulus_and_phase}, copy(8, 8), 1e-6,
            why=WHY_FUNCTION),
        Row("`CArg`, Complex 8", lambda zx, d: zx.ZXCArg(d.wave, d.to(np.complex64)), {"NumPy": numpy_direction},
            copy(8, 8), 1e-6, why="The modulus is scaled so that no square overflows."),
        Row("`Norm`, Complex 8", lambda zx, d: zx.ZXNorm(d.wave, 2.0, d.to(np.float32)), {"NumPy": numpy_norm},
            copy(8, 4), 1e-6, why=WHY_MODULUS),
        Row("`Polar`, Real 4", lambda zx, d: zx.ZXPolar(d.positive, d.real, d.to(np.complex64)),
            {"NumPy": numpy_polar}, SINE_AND_COSINE, 1e-6, why=WHY_FUNCTION),
        unary("`Exp2`, Real 4", "ZXExp2", "real", np.float32, np.exp2, (4, 4), 1e-6, WHY_FUNCTION),
        unary("`Exp2`, Real 8", "ZXExp2", "real8", np.float64, np.exp2, (8, 8), 1e-14, WHY_LIBRARY),
        unary("`Log2`, Real 4", "ZXLog2", "positive", np.float32, np.log2, (4, 4), 1e-6, WHY_FUNCTION),
        unary("`Log2`, Real 8", "ZXLog2", "positive8", np.float64, np.log2, (8, 8), 1e-14, WHY_LIBRARY),
        Row("`Pow`, Real 4", lambda zx, d: zx.ZXPow(d.positive, d.real, d.to(np.float32)),
            {"NumPy": lambda d: np.power(d.positive, d.real, out=d.peer_to(np.float32))}, copy(8, 4), 1e-6,
            why=WHY_FUNCTION),
        Row("`Pow`, Real 8", lambda zx, d: zx.ZXPow(d.positive8, d.real8, d.to(np.float64)),
            {"NumPy": lambda d: np.power(d.positive8, d.real8, out=d.peer_to(np.float64))}, copy(16, 8), 1e-13,
            why=WHY_LIBRARY),
    )),
)  # fmt: skip
