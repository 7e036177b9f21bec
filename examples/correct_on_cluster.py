#!/usr/bin/python3
"""Corrects a stack of waves that need not fit into memory, on the processes of this machine or of a cluster.

    python3 examples/correct_on_cluster.py WAVES.npy CORRECTED.npy [--workers 4 | --scheduler tcp://HOST:8786]

WAVES.npy holds complex64 of shape (n, y, x); without such a file, --make 100 writes one of 100 simulated waves first.
Workers read and write the files themselves: on a cluster, they are in a folder that all machines share.
"""

import argparse
import sys
import time

import dask.array
import numpy as np
from distributed import Client, LocalCluster, progress

import zentrix

LENS = dict(kv=300, pixel=0.02, C1=-62, A1="14@35", C3=0.15)


def make(file, count, side=256):
    """Waves after specimens of random phase, as the lens shows them."""
    random = np.random.default_rng(1)
    phases = random.normal(0, 0.3, (count, side, side))
    np.save(file, zentrix.aberrate(np.exp(1j * phases), **LENS))


def correct(source, target, client):
    waves = np.load(source, mmap_mode="r")
    lazy = dask.array.from_array(waves, chunks=(8, *waves.shape[1:]))
    corrected = zentrix.correct(lazy, **LENS)  # nothing is computed yet
    result = np.lib.format.open_memmap(target, "w+", np.complex64, corrected.shape)
    start = time.perf_counter()
    # The file's pages are shared with the workers on this machine; lock=False, because chunks do not overlap.
    job = dask.array.store(corrected, MappedFile(target), lock=False, compute=False)
    future = client.compute(job)
    if sys.stdout.isatty():
        progress(future)
    client.gather(future)
    result.flush()
    return len(waves), time.perf_counter() - start


class MappedFile:
    """A .npy file that each worker opens for itself."""

    def __init__(self, file):
        self.file = file

    def __setitem__(self, place, values):
        mapped = np.load(self.file, mmap_mode="r+")
        mapped[place] = values
        mapped.flush()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("source")
    parser.add_argument("target")
    parser.add_argument("--make", type=int, metavar="COUNT", help="write this many simulated waves to the source first")
    parser.add_argument("--workers", type=int, default=2, help="processes on this machine")
    parser.add_argument("--scheduler", help="address of the scheduler of a running cluster")
    options = parser.parse_args()
    if options.make:
        make(options.source, options.make)
    if options.scheduler:
        with Client(options.scheduler) as client:
            count, seconds = correct(options.source, options.target, client)
    else:
        with LocalCluster(n_workers=options.workers, threads_per_worker=1, dashboard_address=None) as cluster:
            with Client(cluster) as client:
                count, seconds = correct(options.source, options.target, client)
    print(f"{count} waves in {seconds:.1f} s")


if __name__ == "__main__":
    main()
