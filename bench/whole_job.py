#!/usr/bin/python3
"""Times the correction of a wave, from file to file and in Python, against the least that it could take.

    PYTHONPATH=build/release/python bench/whole_job.py [WIDTH...]

The bound is two transforms by SciPy with one worker, reading the wave and writing it with NumPy, and for the program
5 ms for its start. The result is compared first. Then all are timed in turn; a time is the least of several. "wall" is
the time that passes, "processor" the sum over all processors, which other programs disturb less.
"""

import os
import resource
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import numpy as np
from scipy import fft

import zentrix

BUILD = Path(os.environ.get("ZENTRIX_BUILD", Path(__file__).parents[1] / "build/release"))
START = 0.005  #: [s] allowed for the program's start
MICROSCOPE = dict(kv=300, pixel=0.02, C1=-62, A1=(14, 35), C3=0.15)
OPTIONS = "--kv 300 --pixel 0.02 --C1 -62 --A1 14@35 --C3 0.15".split()
WIDTHS = 512, 1000, 1021, 1024, 2048, 4096

#: Starts a program and prints the largest memory that it took [KB]; a process of its own, because that of a process
#: starts with the memory of its parent.
LARGEST_MEMORY = """import os, sys
null = os.open(os.devnull, os.O_WRONLY); os.dup2(null, 1)
print(os.wait4(os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ), 0)[2].ru_maxrss, file=sys.stderr)"""


def transforms(wave):
    return fft.ifft2(fft.fft2(wave, workers=1), workers=1)


def timed(call):
    """(wall, processor) time of a call [s], with that of the processes that it started and waited for."""

    def clocks():
        used = (resource.getrusage(who) for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))
        return np.array([time.perf_counter(), sum(one.ru_utime + one.ru_stime for one in used)])

    begin = clocks()
    call()
    return clocks() - begin


def measure(width, folder, seconds=3.0):
    """Times one size in turn for that long.

    Returns name -> (wall, processor) [s], and "memory": bytes over the wave's.
    """
    random = np.random.default_rng(1)
    wave = random.normal(size=(width, width, 2)).astype(np.float32).view(np.complex64)[..., 0]
    source, written, result = (Path(folder) / name for name in ("wave.npy", "written.npy", "result.npy"))
    np.save(source, wave)
    command = [BUILD / "zentrix", "correct", source, "-o", result, *OPTIONS]

    def program():
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)

    program()
    corrected = zentrix.correct(wave, **MICROSCOPE)
    if not np.array_equal(np.load(result), corrected):
        raise SystemExit(f"{width}: the program's result differs from that of zentrix.correct.")
    back = zentrix.aberrate(corrected, **MICROSCOPE) if hasattr(zentrix, "aberrate") else None
    if back is not None and abs(back - wave).max() > 1e-4:
        raise SystemExit(f"{width}: aberrating does not undo correcting.")

    ways = {
        "program": program,
        "python": lambda: zentrix.correct(wave, **MICROSCOPE),
        "start": lambda: subprocess.run([BUILD / "zentrix", "--help"], check=True, stdout=subprocess.DEVNULL),
        "transforms": lambda: transforms(wave),
        "read": lambda: np.load(source),
        "write": lambda: np.save(written, wave),
    }
    least = dict.fromkeys(ways, np.inf)
    end = time.perf_counter() + seconds
    turns = 0
    while turns < 3 or time.perf_counter() < end:
        turns += 1
        for name, call in ways.items():
            result.unlink(missing_ok=True)
            written.unlink(missing_ok=True)
            least[name] = np.minimum(least[name], timed(call))
    told = subprocess.run([sys.executable, "-S", "-c", LARGEST_MEMORY, *command], check=True, stderr=subprocess.PIPE)
    least["memory"] = (int(told.stderr) * 1024) / wave.nbytes
    return least


def ratios(times):
    """name -> (wall, processor) time over the bound."""
    least = times["transforms"] + times["read"] + times["write"]
    return {"program": times["program"] / (least + START), "python": times["python"] / least}


def main():
    widths = [int(word) for word in sys.argv[1:]] or WIDTHS
    zentrix.load()
    print("width  least times [ms]:                            ratio to the bound, wall     processor time     memory")
    print("       transforms   files   start program  python      program  python        program  python")
    for width in widths:
        with tempfile.TemporaryDirectory() as folder:
            times = measure(width, folder)
        wall, processor = ({name: value[i] for name, value in ratios(times).items()} for i in (0, 1))
        ms = {name: 1e3 * time[0] for name, time in times.items() if name != "memory"}
        print(
            f"{width:5} {ms['transforms']:12.1f}{ms['read'] + ms['write']:8.1f}{ms['start']:8.1f}{ms['program']:8.1f}"
            f"{ms['python']:8.1f}{wall['program']:13.2f}{wall['python']:8.2f}{processor['program']:15.2f}"
            f"{processor['python']:8.2f}{times['memory']:11.2f}",
            flush=True,
        )


if __name__ == "__main__":
    main()
