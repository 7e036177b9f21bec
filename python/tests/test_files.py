"""Image files with their scale, and the functions that use it."""

import pickle
import sys
import types

import numpy as np
import pytest

import zentrix

LENS = dict(C1=-50, A1=(12, 30), C3=0.01)


def wave(shape=(24, 32)):
    return np.exp(1j * np.random.default_rng(3).normal(0, 0.3, shape)).astype(np.complex64)


def test_pixel_size_and_voltage_go_through_a_file_into_correct(tmp_path):
    for name, array in (("a.mrc", wave()), ("a.mrc", wave((3, 24, 32))), ("b.tif", wave().real), ("c.npy", wave())):
        zentrix.write(tmp_path / name, array, pixel=0.05, kv=300)
        image = zentrix.read(tmp_path / name)
        assert np.array_equal(image, array) and image.dtype == array.dtype
        assert (image.pixel, image.kv, image.name) == (0.05, 300, name[0])
        assert [axis.step for axis in image.axes] == [0.0] * (array.ndim - 2) + [0.05, 0.05]

    zentrix.write(tmp_path / "c.npy", wave())  # its scale is not that of the former file
    assert (zentrix.read(tmp_path / "c.npy").pixel, zentrix.read(tmp_path / "c.npy").kv) == (None, None)
    (tmp_path / "c.json").write_text("[]"), (tmp_path / "c.npy.json").write_text("[]")
    with pytest.raises(ValueError, match="c.json: is not a record of c.npy"):
        zentrix.write(tmp_path / "c.npy", wave() + 1, kv=300)
    assert np.array_equal(zentrix.read(tmp_path / "c.npy"), wave())

    waves = zentrix.Image(wave((3, 24, 32)), [(0, 0, ""), (0.05, 1, "nm"), (0.05, 2, "nm")], 300.0)
    corrected = zentrix.correct(waves, **LENS)
    assert corrected.tobytes() == zentrix.correct(np.asarray(waves), kv=300, pixel=0.05, **LENS).tobytes()
    assert (corrected.pixel, corrected.kv, corrected.axes[1].first) == (0.05, 300.0, 1)
    assert zentrix.aberrate(wave=waves[0], pixel=0.05, kv=300, C1=1).shape == (24, 32)
    assert zentrix.correct(waves, C1=np.array([1.0, 2.0])).axes[2:] == waves.axes[1:]  # of a sweep
    other = zentrix.correct(waves, wavelength=0.0025, pixel=0.1, **LENS)
    assert other.tobytes() == zentrix.correct(np.asarray(waves), wavelength=0.0025, pixel=0.1, **LENS).tobytes()
    found = zentrix.estimate(zentrix.Image(wave((64, 64)), waves.axes[1:], 300.0), free="C1, A1")
    assert (found["pixel"], found["kv"], list(found.coefficients)) == (0.05, 300.0, ["C1", "A1"])
    with pytest.raises(TypeError, match="pixel"):
        zentrix.correct(waves[:, ::2, ::2], kv=300, **LENS)  # whose pixels have another size


def test_an_image_is_an_array_that_keeps_its_scale_with_its_shape():
    image = zentrix.Image(wave(), [(0.05, 0, "nm"), (0.5, 0, "Å")], 300.0, "name")
    for same in (abs(image), image.copy(), image + 1, pickle.loads(pickle.dumps(image))):
        assert (same.pixel, same.kv) == (0.05, 300.0)
    assert image[:4].pixel is None and image.sum().ndim == 0
    for axes in ([(0.05, 0, "nm"), (0.06, 0, "nm")], [(1, 0, "1/nm")] * 2, [(1, 0, "")] * 2, []):
        assert zentrix.Image(wave(), axes).pixel is None


def test_wrong_files_and_arguments_are_named_and_leave_files_as_they_were(tmp_path):
    (tmp_path / "a.dm3").write_bytes(b"\0\0\0\3")
    (tmp_path / "a.tif").write_bytes(b"former")
    cases = [
        (lambda: zentrix.read(tmp_path / "none.dm3"), FileNotFoundError, "none.dm3"),
        (lambda: zentrix.read(tmp_path / "a.dm3"), ValueError, "a.dm3: it ends within its header"),
        (lambda: zentrix.read(3.5), TypeError, "The path is a text or a path, not 3.5"),
        (lambda: zentrix.write(tmp_path / "a.tif", wave()), ValueError, "a.tif: cannot be written: TIFF files have no"),
        (lambda: zentrix.write(tmp_path / "a.mrc", wave(), pixel=-1), ValueError, "pixel is above 0"),
        (lambda: zentrix.write(tmp_path / "a.mrc", wave(), kv="x"), TypeError, "kv is a number of kilovolts"),
        (lambda: zentrix.write(tmp_path / "a.mrc", np.zeros(3, "datetime64[s]")), TypeError, ""),
    ]
    for call, kind, text in cases:
        with pytest.raises(kind) as raised:
            call()
        assert text in str(raised.value)
    assert sorted(path.name for path in tmp_path.iterdir()) == ["a.dm3", "a.tif"]
    assert (tmp_path / "a.tif").read_bytes() == b"former"


def test_hyperspy_reads_what_this_package_does_not(tmp_path, monkeypatch):
    file = tmp_path / "a.hspy"
    file.write_bytes(b"\x89HDF\r\n\x1a\n")
    axes = [types.SimpleNamespace(scale=0.5, offset=1.0, units=unit) for unit in ("nm", None)]
    general, beam = types.SimpleNamespace(title="title"), {"Acquisition_instrument.TEM.beam_energy": 200}
    signal = types.SimpleNamespace(data=np.ones((2, 3)), axes_manager=types.SimpleNamespace(_axes=axes))
    signal.metadata = types.SimpleNamespace(General=general, get_item=beam.get)
    api = types.ModuleType("hyperspy.api")
    found = [[signal]]
    api.load = lambda path: found[0]
    monkeypatch.setitem(sys.modules, "hyperspy", types.SimpleNamespace(api=api))
    monkeypatch.setitem(sys.modules, "hyperspy.api", api)
    image = zentrix.read(file)
    assert (image.axes, image.kv, image.name) == (((0.5, 1.0, "nm"), (0.5, 1.0, "")), 200.0, "title")
    found[0] = [signal, signal]
    with pytest.raises(ValueError, match='has 2 signals \\("title", "title"\\)'):
        zentrix.read(file)
    monkeypatch.setitem(sys.modules, "hyperspy.api", None)
    with pytest.raises(ValueError, match="it is not installed"):
        zentrix.read(file)
