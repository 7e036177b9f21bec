"""Type stubs, installation and example of the package."""

import ast
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def test_stubs_have_every_prototype():
    made = subprocess.run([sys.executable, ROOT / "tools/python_stubs.py"], capture_output=True, text=True, check=True)
    stub = (ROOT / "python/zentrix/_functions.pyi").read_text("utf-8")
    assert made.stdout == stub, "run tools/python_stubs.py"


def test_stubs_have_every_public_name():
    import zentrix

    stub = ast.parse((ROOT / "python/zentrix/__init__.pyi").read_text("utf-8"))
    names = {one.name for one in stub.body if isinstance(one, (ast.ClassDef, ast.FunctionDef))}
    assert names == set(zentrix.__all__)
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
    for file in ("include/zentrix64/warp/warp.h", "share/doc/zentrix64/LICENSE", "share/doc/zentrix64/docs/python.md"):
        assert (tmp_path / file).is_file()

    # A library in the working directory, a folder above or its lib/ is not loaded: other users may have put it there.
    (module / "zentrix/Zentrix64.so").rename(tmp_path / "Zentrix64.so")
    (tmp_path / "bin/Zentrix64.so").rename(tmp_path / "lib/Zentrix64.so")
    for command in (load, call):
        refused = run(command)
        assert refused.returncode == 1 and "Zentrix64.so" in refused.stderr
        assert run(command, ZENTRIX_LIBRARY=str(tmp_path / "Zentrix64.so")).returncode == 0


def test_example_corrects_and_plots(tmp_path):
    picture = tmp_path / "picture.png"
    example = ROOT / "examples/correct_wave.py"
    done = subprocess.run([sys.executable, example, picture], capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stdout + done.stderr
    assert picture.read_bytes().startswith(b"\x89PNG") and picture.stat().st_size > 30_000
