"""The libraries that the script functions are compared with. All but NumPy are optional; each uses one thread."""

import os

#: Read when the libraries are loaded, so set before.
for _runtime in ("OMP", "OPENBLAS", "MKL"):
    os.environ[f"{_runtime}_NUM_THREADS"] = "1"

import numpy as np

try:
    import scipy
    from scipy import ndimage, signal
except ImportError:
    scipy = ndimage = signal = None
try:
    import skimage
    from skimage import filters, restoration
except ImportError:
    skimage = filters = restoration = None
try:
    import cv2

    cv2.setNumThreads(1)
except ImportError:
    cv2 = None
try:
    import bottleneck
except ImportError:
    bottleneck = None

#: Name on the page -> (module or None, Debian's package).
LIBRARIES = {
    "NumPy": (np, "python3-numpy"),
    "SciPy": (scipy, "python3-scipy"),
    "scikit-image": (skimage, "python3-skimage"),
    "OpenCV": (cv2, "python3-opencv"),
    "bottleneck": (bottleneck, "python3-bottleneck"),
}


def is_there(peer):
    """Whether a peer can be timed. Its name is that of the library, followed by details: "NumPy, in blocks"."""
    return LIBRARIES[peer.split(",")[0]][0] is not None


def missing_packages():
    return [package for module, package in LIBRARIES.values() if module is None]


def wide_features():
    """NumPy's features of AVX-512 that this processor has, as NPY_DISABLE_CPU_FEATURES accepts them."""
    core = np.core._multiarray_umath
    return [name for name in core.__cpu_dispatch__ if name.startswith("AVX512") and core.__cpu_features__[name]]
