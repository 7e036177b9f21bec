"""Files of lens parameters."""

import json
import pathlib
import re

import numpy as np
import pytest

import zentrix

LENS = dict(
    kv=300.0, pixel=0.02, C1=-62.0, A1=(14.0, 35.0), C3=0.1 + 0.2, B2=(1e-7 / 3, -359 / 7), focus_spread=1e12 / 7,
    tilt=(0.5, -2.0), envelope="on",
)  # fmt: skip


def test_what_is_written_is_read_and_corrects(tmp_path):
    file = tmp_path / "wéllé.json"
    zentrix.write_parameters(file, {**LENS, "C1": np.float32(-62), "A1": "14@35", "wavelength": None})
    read = zentrix.read_parameters(str(file))
    assert read == LENS
    wave = np.exp(1j * np.random.default_rng(1).normal(size=(8, 8))).astype(np.complex64)
    assert (zentrix.correct(wave, **read) == zentrix.correct(wave, **LENS)).all()

    record = {"command": ["zentrix"], "parameters": json.loads(file.read_text("utf-8")), "wavelength_nm": 0.00197}
    file.write_text(json.dumps(record))
    assert zentrix.read_parameters(file) == LENS
    file.write_text('{"energy": 300e3, "frame": {"length": "A", "angle": "deg"}, "C10": -620, "C12": 140, "phi12": 17.5}')
    assert zentrix.read_parameters(file) == {"kv": 300.0, "C1": -62.0, "A1": (14.0, 35.0)}


def test_refusals_name_file_entry_and_reason(tmp_path):
    write, read, file = zentrix.write_parameters, zentrix.read_parameters, tmp_path / "p.json"
    for kind, parameters, text in [
        (ValueError, dict(C10=3), "C10 is not a parameter. The coefficients have the names C1, A1, B2"),
        (ValueError, dict(C1=np.array([1.0, 2.0])), "C1 is one value here, not an array."),
        (ValueError, dict(kv=300, wavelength=0.00197), "kv and wavelength exclude each other"),
        (TypeError, dict(pixel="0.02"), "pixel is the pixel size in nm, not '0.02'"),
        (TypeError, ["C1"], "parameters is a dictionary, not ['C1']."),
    ]:
        with pytest.raises(kind) as refused:
            write(file, parameters)
        assert text in str(refused.value)
        assert not file.exists()
    with pytest.raises(FileNotFoundError):
        read(file)
    with pytest.raises(ValueError, match="cannot be written"):
        write(tmp_path / "none" / "p.json", {})
    file.write_text('{"C1": "x"}')
    with pytest.raises(ValueError, match='p.json: C1 is a number in nm, not "x"'):
        read(file)


def test_the_documented_files_are_read(tmp_path):
    page = (pathlib.Path(__file__).resolve().parents[2] / "docs/parameters.md").read_text("utf-8")
    read = []
    for example in re.findall(r"^```json\n(.*?)^```", page, re.MULTILINE | re.DOTALL):
        (tmp_path / "p.json").write_text(example, "utf-8")
        read.append(zentrix.read_parameters(tmp_path / "p.json"))
    by_hand, with_units, polar, corrector, nexus, record = read
    assert by_hand == dict(kv=300.0, pixel=0.02, C1=-62.0, A1=(14.0, 35.0), B2=(380.0, 110.0))
    assert with_units["A1"] == pytest.approx((14, 35)) and with_units["tilt"] == (0.5, -2.0)
    assert polar["A1"] == pytest.approx((14, 35)) and polar["C3"] == pytest.approx(0.15) and polar["kv"] == 300
    assert corrector == {"C1": -62.0, "B2": pytest.approx((380, 110))}
    assert nexus["C1"] == pytest.approx(-62) and nexus["A1"] == pytest.approx((14.026, 34.925), rel=1e-4)
    assert record == dict(kv=300.0, pixel=0.02, A1=(14.0, 35.0))
