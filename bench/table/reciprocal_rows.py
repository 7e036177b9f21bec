"""Windows, weights, masks and transposes."""

import numpy as np

from zentrix import Ref

from .row import Row, Topic, copy
from .statistics_rows import radii

WHY_WINDOW = "The product is computed in double precision and rounded once; NumPy multiplies in single precision."
WHY_MOVE = "The peer moves elements in the same way; both wait for memory."


def hann(images):
    return 0.5 - 0.5 * np.cos(2 * np.pi * np.arange(images.width) / images.width)


def sine(images):
    return np.sin(np.pi * (np.arange(images.width) + 0.5) / images.width)


def vorbis(images):
    return np.sin(np.pi / 2 * sine(images) ** 2)


def window(function, shape):
    """Offsets and a factor, as for an image whose mean is 1."""

    def peer(images):
        line = shape(images).astype(np.float32)
        result = np.subtract(images.real, np.float32(1), out=images.peer_to(np.float32))
        result *= line
        result *= np.float32(2) * line[:, None]
        result += np.float32(3)
        return result

    return (
        lambda zx, d: getattr(zx, function)(d.real, 1.0, 2.0, 3.0, d.to(np.float32)),
        {"NumPy": peer}, copy(4, 4), 1e-6, 0, WHY_WINDOW,
    )  # fmt: skip


def numpy_hann(images, image, result):
    line = hann(images).astype(np.float32)
    return np.multiply(np.multiply(image, line, out=result), line[:, None], out=result)


def weighted(zx, images):
    return zx.ZXWeight(
        images.real, images.curve, images.half, images.half, 1.0, 1.0, 1, images.to(np.float32)
    )  # fmt: skip


def numpy_weighted(images):
    return images.real * np.interp(radii(images), np.arange(images.width), images.curve[0]).astype(np.float32)


def mask(zx, images):
    """Discs of radius 4 with a soft rim of 2, every 16 pixels from the centre."""
    return zx.ZXMask(images.wave, None, np.float64([[16, 0], [0, 16]]), 4.0, 2.0, images.to(np.complex64))


def numpy_mask(images):
    off = [(place - images.half + 8) % 16 - 8 for place in np.ogrid[: images.width, : images.width]]
    factor = (1 - np.sin(np.pi / 4 * np.clip(np.hypot(*off) - 4, -2, 2))) / 2
    return np.multiply(images.wave, factor.astype(np.float32), out=images.peer_to(np.complex64))


def correlation(zx, images):
    step = 1 / images.width
    return zx.ZXCrossCorrelationMaskWithDefocus(
        images.wave, images.flipped, images.half, images.half, step, step, 50.0, 0.25, 1, Ref(), images.to(np.complex64)
    )


def numpy_correlation(images):
    radius = (radii(images) / images.width).astype(np.float32)
    cross = images.wave * images.flipped.conj()
    cross /= np.abs(cross)
    cross *= np.exp(np.complex64(1j * np.pi * 50) * radius**2)
    return np.where(radius <= 0.25, cross, 0)


def transposed(function, image, axes):
    """Of a volume of 64 x width x width / 64 elements."""

    def source(images):
        return getattr(images, image).reshape(64, images.width, images.width // 64)

    def target(images):
        return tuple(source(images).shape[axis] for axis in axes)

    def peer(images):
        result = images.peer_to(source(images).dtype, *target(images))
        np.copyto(result, source(images).transpose(axes))
        return result

    depth = {"real": 4, "wave": 8, "uint16": 2}[image]
    return (
        lambda zx, d: getattr(zx, function)(source(d), d.to(source(d).dtype, *target(d))),
        {"NumPy": peer}, copy(depth, depth), 0, 0, WHY_MOVE,
    )  # fmt: skip


TOPICS = (
    Topic("Windows and masks", (
        Row("`FTWindow`, Hann, Real 4", lambda zx, d: zx.ZXFTWindow(d.real, 0, d.to(np.float32)),
            {"NumPy": lambda d: numpy_hann(d, d.real, d.peer_to(np.float32))}, copy(4, 4), 1e-6, why=WHY_WINDOW),
        Row("`FTWindow`, Hann, Complex 8", lambda zx, d: zx.ZXFTWindow(d.wave, 0, d.to(np.complex64)),
            {"NumPy": lambda d: numpy_hann(d, d.wave, d.peer_to(np.complex64))}, copy(8, 8), 1e-6, why=WHY_WINDOW),
        Row("`HanningWindow`, Real 4", *window("ZXHanningWindow", hann)),
        Row("`SineWindow`, Real 4", *window("ZXSineWindow", sine)),
        Row("`VorbisWindow`, Real 4", *window("ZXVorbisWindow", vorbis)),
        Row("`Weight`, linear, Real 4", weighted, {"NumPy": numpy_weighted}, copy(4, 4), 1e-6),
        Row("`Mask`, lattice, Complex 8", mask, {"NumPy": numpy_mask}, copy(8, 8), 1e-6,
            why="The nearest disc is searched for any lattice; the peer's formula holds for this square one only."),
        Row("`CrossCorrelationMaskWithDefocus`, Complex 8", correlation, {"NumPy": numpy_correlation}, copy(16, 8),
            2e-5),
    )),
    Topic("Transposes", (
        Row("`TransposeXZ`, uint16", *transposed("ZXTransposeXZ", "uint16", (2, 1, 0))),
        Row("`TransposeXZ`, Real 4", *transposed("ZXTransposeXZ", "real", (2, 1, 0))),
        Row("`TransposeXZ`, Complex 8", *transposed("ZXTransposeXZ", "wave", (2, 1, 0))),
        Row("`TransposeYZ`, Real 4", *transposed("ZXTransposeYZ", "real", (1, 0, 2))),
    ), "Volumes of 64 planes, whose rows are 1/64 of the width."),
)  # fmt: skip
