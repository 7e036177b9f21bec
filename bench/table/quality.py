"""Unwrapping compared with scikit-image: how many pixels are right, and the time."""

from dataclasses import dataclass

import numpy as np

from .images import Images, wrapped
from .measuring import fastest_in_turn, once
from .peers import restoration

WIDTH = 512
NOISE = 0.0, 0.5, 0.8, 1.0  #: standard deviations [rad]


@dataclass
class Quality:
    """One phase. `wrong` of a simulated one is a share of the pixels, of a recorded one the number of jumps left."""

    phase: str
    ours: float  #: [s]
    theirs: float | None
    our_wrong: float
    their_wrong: float | None


def wrong_share(result, truth):
    """The share of pixels whose whole turns are not those of most pixels."""
    turns = np.round((result - truth) / (2 * np.pi)).astype(int)
    return 1 - np.unique(turns, return_counts=True)[1].max() / turns.size


def jumps_left(result):
    """Neighbours that differ by more than half a turn."""
    return int(sum((np.abs(np.diff(result, axis=axis)) > np.pi).sum() for axis in (0, 1)))


def compare(zx, name, phase, wrong, seconds):
    ways = {"ours": lambda: zx.ZXGoldstain(phase, 0)}
    if restoration:
        ways["theirs"] = lambda: restoration.unwrap_phase(phase)
    first = {way: once(call) for way, call in ways.items()}
    least = fastest_in_turn(ways, {way: seconds for way, (seconds, _) in first.items()}, seconds)
    wrongs = {way: wrong(result) for way, (_, result) in first.items()}
    return Quality(name, least["ours"], least.get("theirs"), wrongs["ours"], wrongs.get("theirs"))


def measure(zx, recorded=None, width=WIDTH, seconds=0.6):
    """Yields the qualities of simulated phases and, last, of the recorded one (an array or None)."""
    images = Images(width)
    for noise in NOISE:
        truth = images.surface + np.float32(noise) * images.real
        yield compare(
            zx, f"simulated, noise {noise:g} rad", wrapped(truth), lambda r, t=truth: wrong_share(r, t), seconds
        )
    if recorded is not None:
        size = " x ".join(map(str, recorded.shape[::-1]))
        yield compare(zx, f"recorded, {size}", np.ascontiguousarray(recorded, np.float32), jumps_left, seconds)
