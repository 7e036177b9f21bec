#!/usr/bin/python3
"""Corrects a wave for 49 values of defocus in one call and plots them.

The modulus of the wave after a thin specimen is uniform. Where it varies least, the defocus is right.

    python3 examples/focus_sweep.py [PICTURE.png]
"""

import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from correct_wave import LENS, PIXEL, SIZE, crystal

import zentrix


def main():
    ideal = np.exp(1j * crystal()).astype(np.complex64)
    seen = zentrix.aberrate(ideal, **LENS)

    focus = np.linspace(-64, -16, 49)  # nm
    waves = zentrix.correct(seen, **LENS | {"C1": focus})  # (49, y, x), the wave transformed once
    variation = abs(waves).std(axis=(1, 2))
    best = focus[variation.argmin()]
    print(f"the modulus varies least at C1 = {best:g} nm; the wave was imaged at {LENS['C1']} nm")

    figure = plt.figure(figsize=(12, 5.6), layout="constrained")
    above, below = figure.subfigures(2, 1, height_ratios=(1, 0.8))
    axes = above.subplots(1, 5, sharey=True)
    limits = dict(vmin=abs(waves).min(), vmax=abs(waves).max())
    for axis, index in zip(axes, range(0, 49, 12)):
        shown = axis.imshow(abs(waves[index]), cmap="gray", extent=(0, SIZE * PIXEL, SIZE * PIXEL, 0), **limits)
        axis.set_title(f"corrected with C1 = {focus[index]:g} nm", fontsize=10)
        axis.set_xlabel("nm")
    above.colorbar(shown, ax=axes, label="modulus", pad=0.01, shrink=0.75)
    curve = below.subplots()
    curve.plot(focus, variation, "o-", markersize=3)
    curve.axvline(LENS["C1"], color="gray", linestyle=":", label="C1 of the lens")
    curve.set_xlabel("C1 [nm]")
    curve.set_ylabel("std of the modulus")
    curve.legend()
    file = sys.argv[1] if len(sys.argv) > 1 else "focus_sweep.png"
    figure.savefig(file, dpi=120)
    print(f"picture in {file}")
    return 0 if best == LENS["C1"] else 1


if __name__ == "__main__":
    sys.exit(main())
