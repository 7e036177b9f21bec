"""Type stubs, installation and example of the package."""

import ast
import os
import pathlib
import platform
import shutil
import subprocess
import sys
import sysconfig
import zipfile

import pytest

import zentrix

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXTENSION = "_core" + sysconfig.get_config_var("EXT_SUFFIX")


def test_stubs_have_every_prototype():
    made = subprocess.run([sys.executable, ROOT / "tools/python_stubs.py"], capture_output=True, text=True, check=True)
    stub = (ROOT / "python/zentrix/_functions.pyi").read_text("utf-8")
    assert made.stdout == stub, "run tools/python_stubs.py"


def test_stubs_have_every_public_name():
    stub = ast.parse((ROOT / "python/zentrix/__init__.pyi").read_text("utf-8"))
    names = {one.name for one in stub.body if isinstance(one, (ast.ClassDef, ast.FunctionDef))}
    assert {name for name in names if not name.startswith("_")} == set(zentrix.__all__)
    host = next(one for one in stub.body if getattr(one, "name", "") == "Host")
    assert {one.name for one in host.body} == {name for name in vars(zentrix.Host) if not name.startswith("_")}


def test_installed_tree_is_complete(tmp_path):
    build = pathlib.Path(os.environ["ZENTRIX_BUILD"])
    subprocess.run(["cmake", "--install", build, "--prefix", tmp_path], capture_output=True, check=True)
    module = next(tmp_path.glob("lib/python3*/dist-packages"))
    program = "import zentrix; zx = zentrix.load(); print(zx._file, zx.ZXPadSize(100))"
    load = [sys.executable, "-c", program]
    call = [tmp_path / "bin/zentrix", "call", "ZXPadSize", "100"]

    def run(command, **variables):
        environment = {**os.environ, "PYTHONPATH": str(module), **variables}
        return subprocess.run(command, env=environment, cwd=tmp_path, capture_output=True, text=True, check=False)

    assert run(load).stdout.split() == [str(module / "zentrix/Zentrix64.so"), "112"]
    called = run(call)
    assert (called.returncode, called.stdout, called.stderr) == (0, "112\n", "")
    for file in ("include/zentrix64/warp/warp.h", "share/doc/zentrix/NOTICE", "share/doc/zentrix/docs/python.md"):
        assert (tmp_path / file).is_file()

    # A library in the working directory, a folder above or its lib/ is not loaded: other users may have put it there.
    (module / "zentrix/Zentrix64.so").rename(tmp_path / "Zentrix64.so")
    (library,) = tmp_path.glob("lib/*/zentrix64/Zentrix64.so")
    library.rename(tmp_path / "lib/Zentrix64.so")
    for command in (load, call):
        refused = run(command)
        assert refused.returncode == 1 and "Zentrix64.so" in refused.stderr
        assert run(command, ZENTRIX_LIBRARY=str(tmp_path / "Zentrix64.so")).returncode == 0


@pytest.mark.skipif("LD_PRELOAD" in os.environ, reason="the sanitized module runs from its build only")
def test_pip_makes_a_wheel_that_runs_in_a_virtual_environment(tmp_path):
    def run(*command, rc=0):
        clean = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
        done = subprocess.run(command, env=clean, cwd=tmp_path, capture_output=True, text=True, check=False)
        assert done.returncode == rc, done.stdout + done.stderr
        return done.stdout + done.stderr

    not_sources = shutil.ignore_patterns(".git", "build", "_skbuild", "demo-output", "__pycache__", "*.egg-info")
    shutil.copytree(ROOT, tmp_path / "sources", ignore=not_sources)
    offline = ("--quiet", "--no-index", "--no-deps")
    run(sys.executable, "-m", "pip", "wheel", *offline, "--no-build-isolation", "./sources")  # takes ZENTRIX_BUILD
    (wheel,) = tmp_path.glob("*.whl")
    version = wheel.name.split("-")[1]
    tag = f"cp{sys.version_info.major}{sys.version_info.minor}"
    assert wheel.name == f"zentrix-{version}-{tag}-{tag}-linux_x86_64.whl"
    built = pathlib.Path(os.environ["ZENTRIX_BUILD"]) / "python/zentrix"
    files = {path.relative_to(built.parent) for path in built.rglob("*.*") if path.suffix != ".pyc"}
    with zipfile.ZipFile(wheel) as held:
        names = {pathlib.Path(name) for name in held.namelist()}
    assert {name for name in names if name.parts[0] == "zentrix"} == files
    assert {"LICENSE", "NOTICE"} <= {name.name for name in names}

    run(sys.executable, "-m", "venv", "--system-site-packages", "--without-pip", "there")
    python = tmp_path / "there/bin/python"
    run(python, "-m", "pip", "install", *offline, wheel)
    assert run(python, "-m", "zentrix", "--version") == f"zentrix {version}\n"
    program = "import zentrix; from importlib import metadata; print(metadata.version('zentrix'), zentrix.load()._file)"
    (folder,) = tmp_path.glob("there/lib/python3*/site-packages/zentrix")
    assert run(python, "-c", program).split() == [version, str(folder / "Zentrix64.so")]
    for name in (EXTENSION, "Zentrix64.so"):
        assert "RUNPATH" not in run("readelf", "-d", folder / name)  # nothing of the build's folders

    (folder / EXTENSION).rename(folder / "_core.cpython-39-x86_64-linux-gnu.so")
    said = run(python, "-c", "import zentrix", rc=1)
    assert f"zentrix was built for CPython 3.9; this is CPython {platform.python_version()}." in said


def test_an_interpreter_without_numpy_is_told_so():
    folder = pathlib.Path(zentrix.__file__).parents[1]
    command = [sys.executable, "-S", "-c", f"import sys; sys.path.append({str(folder)!r}); import zentrix"]
    refusal = subprocess.run(command, capture_output=True, text=True, check=False, env={}).stderr
    assert f"zentrix needs NumPy, which {sys.executable} does not have: " in refusal
