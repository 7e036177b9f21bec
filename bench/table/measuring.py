"""Measures rows: results are compared first, then all ways are timed in turn within this process."""

import time
from dataclasses import dataclass
from pathlib import Path

import numpy as np

from .images import Images
from .peers import is_there
from .row import agree

SECONDS = 0.35  #: of timing for a row at one size
TURN = 0.002  #: a way that takes less [s] is repeated within its turn
ROUNDS = 3, 60  #: turns of each way, at least and at most
PATIENCE = 2.5  #: a plain form or peer whose forecast for a size exceeds this [s] is not run there


@dataclass
class Timing:
    """One row at one size: least times of one call [s]; None: not run, because it would take too long."""

    ours: float
    plain: float | None
    peers: dict
    limit: float | None
    differ: list  #: names of peers, or "plain", whose results differ


def once(call, clock=time.process_time):
    """The time of one call [s] and its result."""
    start = clock()
    result = call()
    return clock() - start, result


def fastest_in_turn(ways, estimates, seconds=SECONDS, clock=time.process_time):
    """The least times [s] of several calls; `ways` and `estimates` have the same keys.

    clock  the processor's time, which the load of other programs disturbs little; of other processes, that of the wall
    """
    least = dict.fromkeys(ways, np.inf)
    repeats = {name: int(np.clip(TURN / estimates[name], 1, 50)) for name in ways}
    end = time.perf_counter() + seconds
    for turn in range(ROUNDS[1]):
        if turn >= ROUNDS[0] and time.perf_counter() > end:
            break
        for name, call in ways.items():
            for _ in range(repeats[name]):
                least[name] = min(least[name], once(call, clock)[0])
    return least


def plainly(zx, call):
    """The call with the plain forms of all kernels."""

    def switched():
        zx.ZXSetUseSIMD(0)
        try:
            return call()
        finally:
            zx.ZXSetUseSIMD(1)

    return switched


def copied(result):
    """A result that does not change when its destination, an array or a file, is written again."""
    if isinstance(result, Path):
        return np.load(result)
    return tuple(map(copied, result)) if isinstance(result, tuple) else np.array(result)


def measure_row(zx, row, images, former=None, names=None, seconds=SECONDS):
    """Compares and times a row.

    former  (pixels, Timing) at a smaller size, for the forecast of slow peers
    names   the peers that are timed; None: all, the plain form and the limit
    """

    def forecast(way):
        if former is None:
            return 0
        pixels, timing = former
        known = timing.plain if way == "plain" else timing.peers.get(way, 0)
        return np.inf if known is None else known * images.pixels / pixels

    calls = {"ours": lambda: row.ours(zx, images)}
    for peer, call in row.peers.items():
        if is_there(peer) and (names is None or peer in names):
            calls[peer] = lambda call=call: call(images)
    if names is None and row.switched:
        calls["plain"] = plainly(zx, calls["ours"])
    given_up = [way for way in calls if way != "ours" and forecast(way) > PATIENCE]
    for way in given_up:
        del calls[way]

    clock = time.process_time if row.switched else time.perf_counter
    estimates, differ = {}, []
    estimates["ours"], result = once(calls["ours"], clock)
    result = copied(result)
    if row.right and not row.right(images, result):
        differ.append("ours")
    for way in list(calls)[1:]:
        estimates[way], other = once(calls[way], clock)
        if (way == "plain" or not row.right) and not agree(result, other, row.tolerance, row.margin):
            differ.append(way)
    if names is None:
        calls["limit"] = lambda: row.limit.call(images)
        estimates["limit"] = once(calls["limit"], clock)[0]
    least = fastest_in_turn(calls, estimates, seconds, clock)
    peers = {peer: least.get(peer) for peer in row.peers if peer in least or peer in given_up}
    return Timing(least["ours"], least.get("plain"), peers, least.get("limit"), differ)


def measure_topics(zx, topics, widths, names=None, progress=print, seconds=SECONDS):
    """Yields (row's name, width, Timing), one width after the other."""
    former = {}
    for width in widths:
        images = Images(width)
        for topic in topics:
            for row in topic.rows:
                if names is not None and not names & set(row.peers):
                    continue
                timing = measure_row(zx, row, images, former.get(row.name), names, seconds)
                former[row.name] = images.pixels, timing
                best = min((t for t in timing.peers.values() if t), default=0)
                progress(
                    f"{width:5} {row.name:52} {timing.ours * 1e9 / images.pixels:9.3f} ns/pixel"
                    f"  fastest peer {best / timing.ours:6.2f}" + "".join(f"  {w} DIFFERS" for w in timing.differ)
                )
                yield row.name, width, timing
