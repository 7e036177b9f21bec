"""The examples run."""

import ast
import json
import os
import pathlib
import subprocess
import sys

import numpy as np
import pytest

import zentrix

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"


def run(*command):
    done = subprocess.run([sys.executable, *command], capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stdout + done.stderr


@pytest.mark.parametrize("name", ["correct_wave.py", "focus_sweep.py"])
def test_pictures(name, tmp_path):
    picture = tmp_path / "picture.png"
    run(EXAMPLES / name, picture)
    assert picture.read_bytes().startswith(b"\x89PNG") and picture.stat().st_size > 30_000


@pytest.mark.skipif("LD_PRELOAD" in os.environ, reason="the sanitizers slow the workers' start beyond its limits")
def test_cluster(tmp_path):
    pytest.importorskip("distributed")
    source, target = tmp_path / "waves.npy", tmp_path / "corrected.npy"
    run(EXAMPLES / "correct_on_cluster.py", source, target, "--make", "20")
    expected = zentrix.correct(np.load(source), kv=300, pixel=0.02, C1=-62, A1=(14, 35), C3=0.15)
    assert np.array_equal(np.load(target), expected)


def test_notebook(monkeypatch):
    """Executes the cells as a notebook does, without its packages. They check their results."""
    monkeypatch.setenv("MPLBACKEND", "Agg")
    cells = json.loads((EXAMPLES / "first_steps.ipynb").read_text("utf-8"))["cells"]
    sources = ["".join(cell["source"]) for cell in cells if cell["cell_type"] == "code"]
    assert all(not cell.get("outputs") for cell in cells)
    names = {}
    for number, source in enumerate(sources):
        exec(compile(ast.parse(source), f"code cell {number}", "exec"), names)
    names["plt"].close("all")
    assert set(names["theirs"]) == {"energy", "C10", "C12", "phi12", "C30"}
