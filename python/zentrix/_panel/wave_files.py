"""The three files of a corrected wave."""

import numpy as np
from matplotlib import image

from .shades import picture_of


def write_all(path, wave, parameters, display, colour, marks):
    """Writes path (.npy) and, beside it, .png and .json; returns their paths."""
    paths = path, path.with_suffix(".png"), path.with_suffix(".json")
    np.save(paths[0], wave)
    image.imsave(paths[1], picture_of(wave, display, colour, marks)[0])
    paths[2].write_text(parameters + "\n", "utf-8")
    return paths
