"""Stacks beyond memory and clusters."""

import os
import signal

import numpy as np
import pytest

import zentrix

dask = pytest.importorskip("dask")
da = pytest.importorskip("dask.array")
SANITIZED = "LD_PRELOAD" in os.environ
LENS = dict(kv=300, pixel=0.05, C1=-50, A1=(12, 30), C3=0.01)


def stack_of_waves(count, side=48, seed=3):
    rng = np.random.default_rng(seed)
    return np.exp(1j * rng.normal(0, 0.3, (count, side, side))).astype(np.complex64)


@pytest.mark.parametrize("scheduler", ["sync", "threads"] if SANITIZED else ["sync", "threads", "processes"])
def test_chunks_give_the_bits_of_single_calls(scheduler):
    import zentrix.dask as lazy

    waves = stack_of_waves(6)
    phases = np.angle(waves * 1j).astype(np.float32)
    hole = np.zeros(phases.shape, bool)
    hole[:, 3:9, 4] = True
    split = da.from_array(waves, chunks=(4, 20, 48))  # chunks of unequal size, and planes in pieces
    whole = da.from_array(phases, chunks=(2, 48, 48))
    focus = np.array([-40.0, 0.0, 25.0])
    single = np.stack([zentrix.correct(wave, **LENS) for wave in waves])
    cases = [
        (lazy.correct(split, **LENS), single),
        (zentrix.correct(split, **LENS), single),
        (lazy.aberrate(split, **LENS | {"C1": focus}), zentrix.aberrate(waves, **LENS | {"C1": focus})),
        (lazy.unwrap(whole), zentrix.unwrap(phases)),
    ]
    for mask in (hole, hole[0], da.from_array(hole, chunks=(3, 48, 48))):
        cases.append((lazy.unwrap(whole, mask), zentrix.unwrap(phases, hole)))
    results = dask.compute(*(promised for promised, _ in cases), scheduler=scheduler)
    for result, (promised, expected) in zip(results, cases):
        assert (promised.shape, promised.dtype) == (expected.shape, expected.dtype)
        assert np.array_equal(result, expected)


def test_wrong_uses_are_refused_before_anything_is_computed():
    import zentrix.dask as lazy

    waves = da.from_array(stack_of_waves(2), chunks=(1, 48, 48))
    refusals = (
        (lambda: lazy.correct(waves.compute(), **LENS), "zentrix.dask.correct takes a Dask array, not an array of"),
        (lambda: lazy.correct(waves.real, **LENS), "The wave is a complex array of shape (..., y, x), not float32"),
        (lambda: lazy.correct(waves, **LENS | {"kv": 300000}), "300000 kV: are these volts?"),
        (lambda: lazy.correct(waves[waves[:, 0, 0].real > 9], **LENS), "chunks of unknown size"),
        (lambda: lazy.unwrap(waves.real, np.zeros((3, 3), bool)), "The mask of shape (3, 3) does not fit"),
        (lambda: zentrix.correct(waves, progress=list, **LENS), "dask.diagnostics.ProgressBar"),
        (lambda: zentrix.unwrap(waves.real, report=True), "has no report"),
        (lambda: zentrix.unwrap(waves.real, None, None, True), "has no report"),
        (lambda: zentrix.dask.correct(waves, nan="drop", **LENS), 'nan is "refuse", "zero" or "mean"'),
        (lambda: lazy.unwrap(waves.real, box=-1), "box is a number of pixels, 0 or more, not -1."),
        (lambda: lazy.unwrap(waves.real, waves.real), "mask is a boolean array, True where a pixel is left out, not"),
    )
    for call, text in refusals:
        with pytest.raises((TypeError, ValueError)) as refused:
            call()
        assert text in str(refused.value)


@pytest.mark.skipif(SANITIZED, reason="the sanitizers slow the workers' start beyond its limits")
def test_a_cluster_gives_the_bits_of_the_loop_even_if_a_worker_dies():
    distributed = pytest.importorskip("distributed")
    waves = stack_of_waves(200, 32)
    loop = np.stack([zentrix.correct(wave, **LENS) for wave in waves])
    options = dict(n_workers=2, threads_per_worker=2, processes=True, dashboard_address=None)
    with distributed.LocalCluster(**options) as cluster, distributed.Client(cluster) as client:
        tasks = client.map(lambda wave: zentrix.correct(wave, **LENS), list(waves[:60]))
        assert np.array_equal(client.gather(tasks), loop[:60])
        del tasks

        lazy = zentrix.correct(da.from_array(waves, chunks=(1, 32, 32)), **LENS)
        victim = next(iter(client.run(os.getpid).values()))
        done = client.compute(list(lazy.blocks))
        distributed.wait(done[:20])
        os.kill(victim, signal.SIGKILL)  # Dask computes again what it held
        result = np.concatenate(client.gather(done))
        assert victim not in client.run(os.getpid).values()
    assert result.tobytes() == loop.tobytes()
