#!/usr/bin/python3
"""Makes docs/performance.md: every script function and the whole jobs compared with what people use today.

    PYTHONPATH=build/release/python bench/performance_table.py [--phase FILE.npy] [--only TEXT] [--sizes N,N] [-o FILE]

Takes some minutes on a quiet machine. Peers that are not installed are left out, with a note.
"""

import argparse
import os
import pickle
import re
import subprocess
import sys
import tempfile
from dataclasses import replace
from pathlib import Path

from table import machine, page, peers, quality
from table.measuring import measure_topics
from table.rows import TOPICS

import numpy as np
import whole_job
import zentrix

ROOT = Path(__file__).parents[1]
WIDTHS = 512, 2048, 4096
NUMPY = {"NumPy", "NumPy, in blocks"}


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--phase", help="a recorded phase [rad] that is unwrapped in addition to the simulated ones")
    parser.add_argument("--only", default="", help="measure only rows whose name or topic contains this text")
    parser.add_argument("--sizes", default=",".join(map(str, WIDTHS)), help="side lengths, multiples of 64")
    parser.add_argument("-o", "--output", default=ROOT / "docs/performance.md", help="the page; - prints it")
    parser.add_argument("--narrow", help=argparse.SUPPRESS)  # a second process: rows with NumPy, results to a file
    parser.add_argument("--jobs", help=argparse.SUPPRESS)  # a third process: bench/whole_job.py, results to a file
    return parser.parse_args()


def chosen(text):
    for topic in TOPICS:
        rows = tuple(row for row in topic.rows if text.lower() in (topic.title + row.name).lower())
        if rows:
            yield replace(topic, rows=rows)


def measured(zx, topics, widths, names=None):
    results = {}
    for name, width, timing in measure_topics(zx, topics, widths, names, lambda line: print(line, file=sys.stderr)):
        results.setdefault(name, {})[width] = timing
    return results


def measured_apart(options, what, **environment):
    """What a process of its own measures and leaves in the file of the option `what`."""
    print(f"process with {what} {' '.join(environment)}", file=sys.stderr)
    with tempfile.NamedTemporaryFile() as file:
        command = [sys.executable, __file__, what, file.name, "--only", options.only, "--sizes", options.sizes]
        subprocess.run(command, env=os.environ | environment, check=True)
        return pickle.load(file)


def measured_jobs(widths):
    """(width, [ms] of transforms, files, program, Python, their ratios to the bound), on all processors."""
    for width in sorted({*widths, *whole_job.WIDTHS} if widths == list(WIDTHS) else widths):
        with tempfile.TemporaryDirectory() as folder:
            times = whole_job.measure(width, folder, seconds=2.0)
        wall = {name: times[name][0] for name in times if name != "memory"}
        over = whole_job.ratios(times)
        ms = wall["transforms"], wall["read"] + wall["write"], wall["program"], wall["python"]
        yield width, *(1e3 * time for time in ms), over["program"][0], over["python"][0]


def measured_warps():
    """The lines of bench/warp_bench: (element type, function, ns/pixel, ratio)."""
    program = whole_job.BUILD / "bench/warp_bench"
    if not program.exists():
        print(f"{program} is not built: no warps", file=sys.stderr)
        return []
    text = subprocess.run([program, "--benchmark_color=false"], capture_output=True, text=True, check=True).stdout
    units = {"p": 1e-3, "n": 1, "u": 1e3}
    line = re.compile(r"^warp ([^/]+)/(.+?)\s+[\d.]+ ms .*?([\d.]+)([pnu])s?\s+([\d.]+)$", re.M)
    return [(kind, way, float(time) * units[unit], float(share)) for kind, way, time, unit, share in line.findall(text)]


def main():
    options = arguments()
    widths = [int(width) for width in options.sizes.split(",")]
    topics = list(chosen(options.only))
    titles = {topic.title for topic in topics}
    if options.jobs:
        Path(options.jobs).write_bytes(pickle.dumps(list(measured_jobs(widths))))
        return 0
    jobs = measured_apart(options, "--jobs") if "Whole jobs" in titles and not options.narrow else []
    os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})
    zx = zentrix.load()
    if options.narrow:
        Path(options.narrow).write_bytes(pickle.dumps(measured(zx, topics, widths, NUMPY)))
        return 0
    for package in peers.missing_packages():
        print(f"{package} is not installed: its rows have no such peer", file=sys.stderr)
    results = measured(zx, topics, widths)
    wide = " ".join(peers.wide_features())
    narrow = measured_apart(options, "--narrow", NPY_DISABLE_CPU_FEATURES=wide) if wide else {}
    recorded = np.load(options.phase) if options.phase else None
    qualities = list(quality.measure(zx, recorded)) if "Unwrapping" in titles else []
    warps = measured_warps() if not options.only else []
    additions = {
        "Whole jobs": page.job_table(jobs) if jobs else "",
        "Unwrapping": page.quality_table(qualities) if qualities else "",
    }
    text = page.page(topics, results, narrow, additions, machine.processor(), machine.versions(), widths)
    text += "\n" + page.warp_table(warps) if warps else ""
    if str(options.output) == "-":
        print(text)
    else:
        Path(options.output).write_text(text)
    return 1 if page.disagreements(results) else 0


if __name__ == "__main__":
    sys.exit(main())
