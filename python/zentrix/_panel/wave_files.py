"""The three files of a corrected wave."""

import pathlib

import numpy as np
from matplotlib import image

from .shades import picture_of


_ENDINGS = (".npy", ".png", ".json")


def paths_of(file):
    """The paths of a wave, its picture and its parameters. `file` may have the ending of one of them: of "run0.5" and
    "run0.5.npy" the wave is run0.5.npy.
    """
    path = pathlib.Path(file)
    if path.suffix.lower() in _ENDINGS:
        path = path.with_suffix("")
    return tuple(path.with_name(path.name + ending) for ending in _ENDINGS)


def unused_paths(file):
    """Those of the file or, if one of the three exists, with the first number appended to the name for which none exists."""
    paths = first = paths_of(file)
    count = 1
    while any(path.exists() for path in paths):
        count += 1
        paths = tuple(path.with_name(f"{path.stem}-{count}{path.suffix}") for path in first)
    return paths


def write_all(paths, wave, parameters, display, colour, marks):
    """Writes the files of paths_of."""
    np.save(paths[0], wave)
    image.imsave(paths[1], picture_of(wave, display, colour, marks)[0])
    paths[2].write_text(parameters + "\n", "utf-8")
