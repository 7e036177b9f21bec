"""Installs the Python module: `pip install .`, `pip wheel .`. CMake builds the extension and the library.

With ZENTRIX_BUILD=build/release in the environment, they are taken from that build instead.
"""

import os
import pathlib
import re

from setuptools import find_packages
from skbuild import setup

HERE = pathlib.Path(__file__).resolve().parent


def version():
    """The version of the CMake project, the only place where it is written."""
    return re.search(r"project\(Zentrix64 VERSION ([0-9.]+)", (HERE / "CMakeLists.txt").read_text("utf-8"))[1]


def cmake():
    """The CMake project with its options and its target."""
    if build := os.environ.get("ZENTRIX_BUILD"):
        folder = pathlib.Path(build).resolve()
        return {"cmake_source_dir": "cmake/from_build", "cmake_args": [f"-DZENTRIX_BUILD={folder}"]}
    options = ["-DZENTRIX_TESTS=OFF", "-DZENTRIX_BENCH=OFF", "-DZENTRIX_PROGRAM=OFF"]
    return {
        "cmake_args": [*options, "-DZENTRIX_PYTHON_FOLDER=python/zentrix"],
        "cmake_install_target": "install_python",
    }


setup(
    name="zentrix",
    version=version(),
    description="Corrects and simulates the lens aberrations of electron waves; unwraps phases; filters images",
    long_description=(HERE / "README.md").read_text("utf-8"),
    long_description_content_type="text/markdown",
    license_files=["LICENSE", "NOTICE"],
    python_requires=">=3.9",
    install_requires=["numpy"],
    extras_require={"dask": ["dask[array]", "distributed"], "hyperspy": ["hyperspy"], "plots": ["matplotlib"]},
    packages=find_packages("python", include=["zentrix*"]),
    package_dir={"": "python"},
    package_data={"": ["*.pyi", "py.typed"]},
    zip_safe=False,
    **cmake(),
)
