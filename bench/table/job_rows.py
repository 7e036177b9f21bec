"""Whole jobs: a wave is corrected, a phase is unwrapped, by the command or in Python."""

import subprocess

import numpy as np
import whole_job
import zentrix
from scipy import fft

from .optics_rows import unwrapped_by_skimage
from .row import Limit, Row, Topic

PROGRAM = whole_job.BUILD / "zentrix"
PIXEL, WAVELENGTH = whole_job.MICROSCOPE["pixel"], 0.0019687489  # [nm]


def corrected(zx, images):
    return zentrix.correct(images.wave, **whole_job.MICROSCOPE)


def corrected_by_scipy(wave):
    """The same as it is usually written; the frequencies stay in the transform's own order."""
    spectrum = fft.fft2(wave, workers=1)
    x, y = (fft.fftfreq(size, PIXEL) * WAVELENGTH for size in wave.shape[::-1])
    w = x - 1j * y[:, None]  # up is positive
    s = np.abs(w) ** 2
    a1 = 14 * np.exp(1j * np.radians(35))
    chi = 2 * np.pi / WAVELENGTH * (-62 * s / 2 + (a1 * w.conj() ** 2).real / 2 + 0.15e6 * s**2 / 4)
    return fft.ifft2(spectrum * np.exp(1j * chi).astype(np.complex64), workers=1)


def with_files(work, source):
    """The call that reads `source` of the images from a file, works on it and writes the result to another."""

    def call(images):
        result = work(np.load(images.file(f"{source}.npy")))
        np.save(images.file("result.npy"), result)
        return result

    return call


def command(name, source, options):
    """The command with a file in and a file out, started as a process."""

    def call(zx, images):
        origin, result = images.file(f"{source}.npy"), images.file("result.npy")
        if not origin.exists():
            np.save(origin, getattr(images, source))
        subprocess.run([PROGRAM, name, origin, "-o", result, *options], check=True, stdout=subprocess.DEVNULL)
        return result  # read when it is compared, not while it is timed

    return call


def _unwrap(phase):
    return zentrix.load().ZXGoldstain(phase, 0)


WHY_JOB = "The start of the program takes some milliseconds, and the transforms are planned."
TWICE = Limit("two transforms", lambda d: whole_job.transforms(d.wave))
TWICE_AND_FILES = Limit("two transforms + files", with_files(whole_job.transforms, "wave"))
UNWRAP_AND_FILES = Limit("function + files", with_files(_unwrap, "phase"))

TOPIC = Topic("Whole jobs", (
    Row("`zentrix.correct`", corrected, {"SciPy, naive": lambda d: corrected_by_scipy(d.wave)}, TWICE, 2e-3,
        why=WHY_JOB),
    Row("`zentrix correct`", command("correct", "wave", whole_job.OPTIONS),
        {"SciPy, naive with files": with_files(corrected_by_scipy, "wave")}, TWICE_AND_FILES, 2e-3, why=WHY_JOB,
        switched=False),
    Row("`zentrix unwrap`", command("unwrap", "phase", []),
        {"scikit-image, with files": with_files(unwrapped_by_skimage, "phase")},
        UNWRAP_AND_FILES, 1e-5, why="The start of the program takes some milliseconds.", switched=False),
), "The transforms of the limit are SciPy's, with one worker; the files are NumPy's. The program's time includes its"
   " start.",
    "ms")  # fmt: skip
