"""Whether this interpreter can load the extension. Imported first, because other errors would hide this one."""

import importlib.machinery
import importlib.util
import pathlib
import platform
import re
import sys


def check(folder):
    """Raises ImportError if `folder` has the extension for another interpreter only, or this one lacks NumPy."""
    if any((folder / f"_core{suffix}").exists() for suffix in importlib.machinery.EXTENSION_SUFFIXES):
        if importlib.util.find_spec("numpy") is None:
            raise ImportError(
                f"zentrix needs NumPy, which {sys.executable} does not have: {sys.executable} -m pip install numpy, or "
                f"run Debian's /usr/bin/python3 with the package python3-numpy."
            )
        return
    made_for = [re.search(r"cpython-(\d)(\d+)", path.name) for path in sorted(folder.glob("_core.*.so"))]
    names = ", ".join(f"CPython {found[1]}.{found[2]}" for found in made_for if found)
    this = f"{platform.python_implementation()} {platform.python_version()}"
    if names:
        raise ImportError(
            f"zentrix was built for {names}; this is {this}. Run it with that interpreter, or install it for this one: "
            f"python3 -m pip install . in the folder of the sources."
        )
    raise ImportError(f"zentrix has no extension module in {folder}: it is not built. See README.md.")


check(pathlib.Path(__file__).resolve().parent)
