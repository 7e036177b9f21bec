"""The live panel without a window: numbers, sizes, transfer function, parameters, undo, files."""

import json
import pathlib
import re

import numpy as np
import pytest

import zentrix
from zentrix._panel import number_text, pages, reduced_wave, shades
from zentrix._panel.contrast_transfer import Transfer
from zentrix._panel.model import Model

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCOPE = dict(kv=300, pixel=0.05)
LENS = dict(C1=-40, A1=(9, 20), B2=(150, -130), C3=0.02)


def noise(shape):
    random = np.random.default_rng(3)
    return (1 + 0.2 * (random.normal(size=shape) + 1j * random.normal(size=shape))).astype(np.complex64)


@pytest.mark.parametrize(
    ("text", "value"),
    [("2.5", 2.5), ("2,5", 2.5), (" -62 ", -62), ("+1e-3", 1e-3), (".5", 0.5), ("5,", 5), ("1,5E2", 150)]
    + [(text, None) for text in ("", "-", "1,234.5", "12abc", "0x10", "1_000", "1 2", "nan", "inf", "1e999", "e5")],
)  # fmt: skip
def test_numbers_are_read_whole_or_not_at_all(text, value):
    assert number_text.read_number(text) == value


def test_angles_and_lengths():
    assert [number_text.wrapped(degrees) for degrees in (0, 357 + 5, -5, 720, 359.9999)] == [0, 2, 355, 0, 0]
    assert [number_text.angle_of(x, y) for x, y in ((1, 0), (0, 1), (-1, 0), (0, -1))] == [0, 90, 180, 270]
    lengths = [number_text.round_length(most) for most in (0.5, 0.199, 1, 4.99, 51, 1999)]
    assert lengths == pytest.approx([0.5, 0.1, 1, 2, 50, 1000])
    texts = [number_text.length_text(length) for length in (0.02, 1, 500, 2000, 5e6)]
    assert texts == ["20 pm", "1 nm", "500 nm", "2 µm", "5 mm"]


def test_pages_and_steps_are_those_of_the_panel_on_windows():
    tags = (ROOT / "src/panel/rules/tag_record.h").read_text("utf-8")
    windows = re.findall(r'\{"(\w\d)", page_id::(\w+), ', tags)
    titles = dict(zip(("rotation", "basic", "third", "fourth", "fifth"), (page.title for page in pages.PAGES)))
    ours = [(row.name, page.title) for page in pages.PAGES for row in page.rows]
    assert ours == [(name, titles[page]) for name, page in windows]
    steps = re.findall(r"\{coefficient::(\w\d), ([\d.]+)\}", (ROOT / "lens/panel_tags.cpp").read_text("utf-8"))
    assert {name: row.step for name, row in pages.COEFFICIENTS.items()} == {name: float(step) for name, step in steps}
    table = zentrix._core.coefficients().items()
    units = {name: (unit.replace("um", "µm"), has_angle) for name, (_, unit, has_angle) in table}
    assert {name: (row.unit, row.has_angle) for name, row in pages.COEFFICIENTS.items()} == units


@pytest.mark.parametrize(
    ("shape", "most", "expected"),
    [
        ((512, 512), (700, 700), (512, 512)),
        ((1024, 1024), (700, 700), (700, 700)),
        ((1024, 1024), (683, 800), (675, 675)),  # 676 to 683 have large prime factors
        ((2048, 1024), (700, 700), (700, 350)),
        ((1000, 1001), (700, 700), (1000, 1001)),  # no common divisor
    ],
)
def test_reduced_sizes_keep_square_pixels(shape, most, expected):
    assert reduced_wave.reduced_size(shape, most) == expected


@pytest.mark.parametrize(
    ("shape", "most"),
    [((64, 64), (48, 48)), ((65, 65), (35, 35)), ((60, 60), (45, 45)), ((400, 600), (200, 300))],
)
def test_picture_is_the_low_passed_corrected_wave(shape, most):
    model = Model(noise(shape), **SCOPE, **LENS, tilt=(1.0, 0.5))
    shown, _ = model.shown(most)
    assert shown.shape == most
    spectrum = np.fft.fftshift(np.fft.fft2(model.corrected()))
    y, x = (full // 2 - kept // 2 for full, kept in zip(shape, most))
    middle = spectrum[y : y + most[0], x : x + most[1]] * (shown.size / spectrum.size)
    np.testing.assert_allclose(shown, np.fft.ifft2(np.fft.ifftshift(middle)), atol=2e-5)


@pytest.mark.parametrize(
    "lens",
    [
        {**LENS, "S5": (3, 40), "R5": (2, -70), "D4": (20, 10), "focus_spread": 3.0, "vibration": 0.01},
        dict(C1=-20, C3=0.01, focus_spread=6, convergence=0.5, tilt=(5.0, 0.0)),
        dict(C1=-20, A1="12@15", focus_spread=6, convergence=0.5, tilt=(2.0, -1.0), envelope="off"),
    ],
)
def test_transfer_function_is_that_of_the_library_where_it_is_sampled(lens):
    lens = dict(kv=300, pixel=0.02, **lens)
    found = Transfer(Model(noise((8, 8)), **lens).optics)
    sampled = np.isfinite(found.square)
    assert 0.05 < sampled.mean() < 1 and sampled[115:125, 115:125].all()
    assert np.array_equal(found.square[sampled], zentrix.ctf((240, 240), **lens).values[sampled])
    sampled = np.isfinite(found.profile)
    assert sampled.mean() > 0.05
    profile = zentrix.ctf(q=found.frequency, **lens).values  # over more directions
    np.testing.assert_allclose(found.profile[sampled], profile[sampled], atol=1e-3)


def test_transfer_function_is_marked_where_a_ring_has_fewer_than_three_samples():
    found = Transfer(dict(kv=300, pixel=0.02, C1=-40, focus_spread=4))
    q, wavelength = found.frequency, zentrix.wavelength(300)
    step = 2 * np.pi * wavelength * 40 * found.limit / 120  # of chi = pi lambda C1 q^2 between pixels, for q = 1
    last = 2 * np.pi / 3 / step
    across = np.arange(-120, 120) / 120 * found.limit
    sampled = np.isfinite(found.square[120])
    assert sampled[np.abs(across) < last - 0.3].all() and not sampled[np.abs(across) > last + 0.3].any()
    np.testing.assert_allclose(found.envelope, np.exp(-((np.pi * 4 * wavelength * q**2) ** 2) / 2), atol=1e-9)


def test_edits_of_one_control_are_one_step_of_undo():
    model = Model(noise((8, 8)), **SCOPE, A1="14@35")
    for degrees in (40, 50, 365):
        assert model.set_value("A1", degrees=degrees, control="knob")
    assert not model.set_value("A1", degrees=5, control="knob")
    model.set_value("C1", value=0.1 + 0.2, control="field")
    assert model.parameters == dict(**SCOPE, C1=0.3, A1=(14, 5))
    history = model.history
    assert history.move(-1) and history.move(-1) and model.parameters == dict(**SCOPE, A1=(14, 35))
    assert not history.move(-1) and history.move(1) and model.values["A1"] == (14, 5)
    assert history.move(1) and model.set_value("C1", value=7, control="field")
    assert not history.move(1) and history.move(-1) and model.values["C1"] == (0.3, 0)


@pytest.mark.parametrize("flaw", ["none", "not finite", "masked"])
def test_copied_call_and_saved_parameters_make_the_same_bits(tmp_path, flaw):
    wave, with_nan = noise((30, 40)), flaw != "none"
    if flaw == "not finite":
        wave[3, 4:6] = np.nan, np.inf
    elif flaw == "masked":
        wave = np.ma.masked_greater(abs(wave), 1.5) * wave
    before = wave.copy()
    model = Model(wave, **SCOPE, **LENS, focus_spread=2, envelope="on", tilt=(1.0, 0.0), save=tmp_path / "a.npy")
    first = model.corrected()
    assert np.array_equal(model.not_finite, np.ma.getmaskarray(np.ma.masked_invalid(wave)))
    assert model.not_finite.any() == with_nan
    assert np.array_equal(eval(model.call_text(), {"zentrix": zentrix, "wave": wave}), first)
    for again in (zentrix.correct(wave, **model.parameters), Model(wave, **model.parameters).corrected()):
        assert np.array_equal(again, first)

    model.apply()
    assert model.values["A1"] == (0, 0) and np.array_equal(model.source, first)
    model.set_value("B2", value=-30.5, degrees=12)
    names = {"zentrix": zentrix, "wave": wave}
    exec(model.call_text(), names)
    assert np.array_equal(names["corrected"], model.corrected())
    for expected in ("a", "a-2"):
        paths = model.save()
        assert [path.name for path in paths] == [expected + end for end in (".npy", ".png", ".json")]
    replayed = wave
    for keywords in json.loads(paths[2].read_text("utf-8"))["corrections"]:
        replayed = zentrix.correct(replayed, **keywords)
    assert np.array_equal(np.load(paths[0]), replayed) and paths[1].stat().st_size > 500

    model.shown((30, 40))
    model.history.move(-1), model.history.move(-1)
    assert np.array_equal(model.corrected(), first) and np.array_equal(model.shown((30, 40))[0], first)
    assert np.array_equal(wave, before, equal_nan=True) and model.shown((30, 40))[1] is not None or not with_nan


def test_files_that_exist_are_replaced_only_by_name(tmp_path):
    model = Model(noise((8, 8)), **SCOPE, save=tmp_path / "run0.5")
    for taken in ("run0.npy", "run0.5.png", "run0.5-2.json"):
        (tmp_path / taken).write_text("of the user")
    assert [path.name for path in model.save()] == ["run0.5-3.npy", "run0.5-3.png", "run0.5-3.json"]
    for given, name in (("run0.5", "run0.5.npy"), ("b.PNG", "b.npy"), ("c.npy", "c.npy")):
        assert model.save(tmp_path / given)[0] == tmp_path / name and (tmp_path / name).exists()
    assert (tmp_path / "run0.npy").read_text() == (tmp_path / "run0.5-2.json").read_text() == "of the user"


@pytest.mark.parametrize(
    ("options", "text"),
    [
        (dict(pixel=0.05), "kv"),
        (dict(SCOPE, C9=1), "C9"),
        (dict(SCOPE, C1=[1.0, 2.0]), "not a sweep"),
        (dict(SCOPE, A1=1e30), "A1 is too large."),
        (dict(SCOPE, show="intensity"), "show is"),
        (dict(SCOPE, tilt=([0, 1], 0)), "one value of tilt, not a sweep"),
    ],
)
def test_wrong_options_are_named(options, text):
    with pytest.raises((ValueError, TypeError), match=re.escape(text)):
        Model(noise((8, 8)), **options)


@pytest.mark.parametrize(
    "change",
    [dict(kv=value) for value in (300e3, float("nan"), True, "200", None)]
    + [dict(pixel=-1), dict(wavelength=0.002), dict(C1=[1, 2]), dict(A1=1e30), dict(tilt=(1, 0)), dict(C1=5, Cs=1)],
)
def test_wrong_numbers_of_a_script_change_nothing(change):
    model = Model(noise((8, 8)), **SCOPE)
    with pytest.raises((ValueError, TypeError)):
        model.set_values(change)
    assert model.parameters == SCOPE and not model.history.move(-1)


@pytest.mark.parametrize("tilt", [1 + 2j, np.array([1, 2]), [np.float32(1), 2], (1, 2)])
def test_numbers_of_each_form_are_kept_as_plain_ones(tilt, tmp_path):
    model = Model(noise((8, 8)), kv=np.int64(300), wavelength=None, pixel=(0.05, 0.05), tilt=tilt)
    model.set_values(dict(focus_spread=np.float32(2), kv=np.array(200)))
    expected = dict(kv=200, pixel=0.05, focus_spread=2, tilt=[1, 2])
    assert json.loads(model.save(tmp_path / "a")[2].read_text("utf-8")) == {"corrections": [expected]}
    assert np.isfinite(Transfer(model.optics).square).any()


def test_shades():
    values = np.linspace(0, 1, 1001, dtype=np.float32)
    values[500] = np.nan
    limits = shades.grey_limits(values, "real")
    assert limits == pytest.approx((0.001, 0.999), abs=2e-3)
    greys = shades.grey_picture(values, limits)
    assert greys[0].tolist() == [0, 0, 0, 255] and greys[-1].tolist() == [255] * 4
    assert (np.diff(greys[:499, 0]) >= 0).all()
    wave = np.exp(1j * np.linspace(0, 6, 64)).astype(np.complex64).reshape(8, 8)
    for flat, grey in (("modulus", 204), ("log", 128)):  # rounding noise is not contrast
        assert (shades.picture_of(wave, flat, False)[0][..., 0] == grey).all()
    around = shades.phase_picture(np.linspace(-np.pi, np.pi, 721, dtype=np.float32))[:, :3].astype(int)
    assert np.abs(np.diff(around, axis=0)).max() <= 8 and np.abs(around[0] - around[-1]).max() <= 3
    assert around[540, 0] > around[540, 2] and around[180, 2] > around[180, 0]  # +90 degrees is reddish, -90 bluish
    wheel, middle = shades.colour_wheel(101), 50
    for degrees in (0, 90, 180, 270, 45):
        x, y = np.cos(np.deg2rad(degrees)) * 38, np.sin(np.deg2rad(degrees)) * 38
        phase = np.float32(np.deg2rad((degrees + 180) % 360 - 180))
        colour = wheel[middle - round(y), middle + round(x), :3].astype(int)
        assert np.abs(colour - shades.phase_picture(np.array([phase]))[0, :3]).max() <= 8
