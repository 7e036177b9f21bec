#!/usr/bin/python3
"""Simulates the exit wave of a thin crystal and a misaligned lens, corrects the image wave and plots all three.

    python3 examples/correct_wave.py [PICTURE.png]
"""

import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np

import zentrix

SIZE = 384
PIXEL = 0.02  # nm
LENS = dict(kv=300, pixel=PIXEL, C1=-40, A1=(9, 20), B2=(250, -130), A2=(200, 70), C3=0.12)


def crystal():
    """Phase of a hexagonal lattice of atom columns, 0.25 nm apart, with a rough edge."""
    random = np.random.default_rng(5)
    y, x = np.indices((SIZE, SIZE)) * PIXEL
    phase = np.zeros((SIZE, SIZE))
    for row in range(36):
        for column in range(32):
            at_x, at_y = (column + 0.5 * (row % 2)) * 0.25, row * 0.2165
            if at_x + 0.5 * at_y < 7.6 + 0.3 * random.normal():
                near = (abs(x - at_x) < 0.2) & (abs(y - at_y) < 0.2)
                square = (x[near] - at_x) ** 2 + (y[near] - at_y) ** 2
                phase[near] += 0.5 * np.exp(-square / (2 * 0.035**2))
    return phase


def plot(pictures, file):
    figure, axes = plt.subplots(1, len(pictures), figsize=(12, 4.6), sharey=True, layout="constrained")
    limits = dict(vmin=min(map(np.min, pictures.values())), vmax=max(map(np.max, pictures.values())))
    for axis, (title, picture) in zip(axes, pictures.items()):
        shown = axis.imshow(picture, cmap="gray", extent=(0, SIZE * PIXEL, SIZE * PIXEL, 0), **limits)
        axis.set_title(title)
        axis.set_xlabel("nm")
    figure.colorbar(shown, ax=axes, label="phase [rad]", pad=0.01, shrink=0.8)
    figure.savefig(file, dpi=120)


def main():
    ideal = np.exp(1j * crystal()).astype(np.complex64)
    seen = zentrix.aberrate(ideal, **LENS)
    corrected = zentrix.correct(seen, **LENS)
    error = abs(corrected - ideal).max()
    print(f"largest difference from the exit wave: {abs(seen - ideal).max():.2g} before, {error:.2g} after")
    waves = {"exit wave": ideal, "image wave": seen, "corrected": corrected}
    file = sys.argv[1] if len(sys.argv) > 1 else "correct_wave.png"
    plot({title: zentrix.unwrap(np.angle(wave)) for title, wave in waves.items()}, file)
    print(f"pictures in {file}")
    return 0 if error < 1e-4 else 1


if __name__ == "__main__":
    sys.exit(main())
