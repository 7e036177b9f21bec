"""The live panel's window on the Agg canvas, driven by synthetic events."""

import os
import pathlib
import subprocess
import sys
import time
from unittest import mock

import matplotlib

matplotlib.use("Agg")

import numpy as np
import pytest
from matplotlib import pyplot
from matplotlib.backend_bases import KeyEvent, MouseEvent

import zentrix
from zentrix._panel import library, program
from zentrix._panel.field import Field
from zentrix._panel.knob import Knob
from zentrix._panel.live_panel import LivePanel
from zentrix._panel.widgets import Arrows, Button


class Driver:
    """Mouse and keys of a panel."""

    def __init__(self, panel):
        self.panel, self.canvas = panel, panel.window.canvas
        panel.window.refresh()

    def mouse(self, kind, x, y, shift=False, **more):
        name = f"{kind}_event"
        key = "shift" if shift else None
        self.canvas.callbacks.process(name, MouseEvent(name, self.canvas, x, y, key=key, **more))
        self.panel.window.refresh()

    def click(self, x, y, shift=False):
        self.mouse("button_press", x, y, shift, button=1)
        self.mouse("button_release", x, y, shift, button=1)

    def keys(self, *keys):
        for key in keys:
            for kind in ("key_press_event", "key_release_event"):
                self.canvas.callbacks.process(kind, KeyEvent(kind, self.canvas, key))
        self.panel.window.refresh()

    def press(self, text):
        self.click(*next(one for one in self.widgets(Button) if one._text == text).box.middle)

    def widgets(self, kind, subject=None):
        return [one for one in self.panel.window.widgets if isinstance(one, kind) and subject in (None, one.subject)]

    def pixels(self):
        box = self.panel.picture.box
        return np.array(self.canvas.buffer_rgba())[-int(box.height) - int(box.y) : -int(box.y), : int(box.width), :3]

    def knob_at(self, name, degrees, kind, **more):
        knob = self.widgets(Knob, name)[0]
        x, y = knob.box.middle
        away, angle = 0.9 * knob.radius, np.deg2rad(degrees)
        self.mouse(kind, x + away * np.cos(angle), y + away * np.sin(angle), **more)


@pytest.fixture
def drive():
    random = np.random.default_rng(9)
    wave = np.exp(0.4j * random.normal(size=(96, 96))).astype(np.complex64)
    yield Driver(LivePanel(wave, kv=300, pixel=0.05, A1=(14, 35)))
    pyplot.close("all")


def test_knobs_turn_counter_clockwise(drive):
    drive.press("Basic")

    def angle():
        return drive.panel.parameters["A1"][1]

    drive.knob_at("A1", 90, "button_press", button=1)
    assert angle() == pytest.approx(90, abs=2)  # a pixel of the mouse
    for degrees in (120, 200, 350):
        drive.knob_at("A1", degrees, "motion_notify")
    drive.knob_at("A1", 350, "button_release", button=1)
    drive.knob_at("A1", 20, "motion_notify")
    turned = angle()
    assert turned == pytest.approx(350, abs=2)
    drive.knob_at("A1", 0, "button_press", button=1, shift=True)
    drive.knob_at("A1", 30, "motion_notify", shift=True)
    drive.knob_at("A1", 30, "button_release", button=1)
    assert (angle() - turned) % 360 == pytest.approx(3, abs=0.4)
    turned = angle()
    drive.keys("up", "pageup", "left", "left")
    assert angle() == pytest.approx((turned + 9) % 360)
    drive.knob_at("A1", 0, "scroll", step=-1)
    drive.knob_at("A1", 0, "scroll", step=-1, shift=True)
    assert angle() == pytest.approx((turned + 3) % 360)
    drive.keys("escape")
    drive.knob_at("A1", 0, "button_press", button=1, shift=True)
    drive.knob_at("A1", 0, "button_release", button=1)
    drive.keys("4", "5", ",", "5", "enter")
    assert angle() == 45.5
    drive.press("Undo")
    assert angle() == pytest.approx((turned + 3) % 360)


def test_fields(drive):
    value, step = drive.widgets(Field, "C1")[0], drive.widgets(Field)[1]

    def read():
        return drive.panel.model.values["C1"][0]

    drive.click(*value.box.middle)
    drive.keys("-", "6", "2", ",", "5")
    assert read() == -62.5 and not value.is_wrong
    drive.keys("x")
    assert read() == -62.5 and value.is_wrong and value.text == "-62,5x"
    drive.keys("tab")
    assert not value.is_wrong and value.text == "-62.5" and drive.panel.window.focused is step
    drive.keys("0", ".", "1", "enter")
    drive.click(*value.box.middle)
    drive.keys("up", "up", "down", "shift+up", "shift")
    assert read() == -62.39
    drive.mouse("scroll", *value.box.middle, step=3)
    assert read() == -62.09
    drive.keys("home", "delete", "right", "backspace", "end", "7", "b")
    assert read() == 2.097 and not drive.panel.picture.before


def test_errors_stay_in_the_status_line(drive, caplog):
    drive.press("Basic")
    drive.click(*drive.widgets(Field, "A1")[0].box.middle)
    drive.keys(*"1e3")
    before = drive.pixels()
    drive.keys("0")
    assert drive.panel.status.text == "A1 is too large." and np.array_equal(drive.pixels(), before)
    drive.press("Apply")
    assert drive.panel.applied == [] and drive.panel.status.text == "A1 is too large."
    drive.keys("ctrl+z")
    assert drive.panel.status.text != "A1 is too large."

    drive.panel.on_change(lambda panel: 1 / 0)
    drive.click(*drive.widgets(Arrows)[0].box.inside(3).middle)
    assert drive.panel.status.text == "division by zero" and "ZeroDivisionError" in caplog.text
    drive.click(-5, 1e6)
    drive.keys("f13", None, "ctrl+alt+delete")
    drive.mouse("scroll", 1, 1, step=1)


def test_picture_follows_and_before_shows_the_source(drive):
    changes = []
    drive.panel.on_change(lambda panel: changes.append(panel.parameters.get("C1")))
    corrected = drive.pixels()
    drive.canvas.callbacks.process("key_press_event", KeyEvent("key_press_event", drive.canvas, "b"))
    drive.panel.window.refresh()
    source = drive.pixels()
    drive.panel.show_before(False)
    drive.panel.set(C1=-60)
    drive.panel.window.refresh()
    changed = drive.pixels()
    assert not np.array_equal(source[40:], corrected[40:]) and not np.array_equal(changed, corrected)
    drive.panel.undo()
    drive.panel.window.refresh()
    assert np.array_equal(drive.pixels(), corrected) and changes == [-60, None]
    drive.panel.set(A1=0)
    drive.panel.window.refresh()
    assert np.array_equal(drive.pixels()[40:], source[40:])
    drive.press("Apply")
    assert drive.panel.applied == [dict(kv=300, pixel=0.05)]


def test_all_pages_displays_and_sizes_are_drawn(drive):
    for dpi, size in ((96, (10, 7)), (144, (10, 7)), (96, (4, 2))):
        drive.panel.figure.set_dpi(dpi)
        drive.panel.figure.set_size_inches(size)
        for page in range(6):
            drive.panel.show_page(page)
            drive.keys("t", str(page % 5 + 1), "c")
            boxes = [one.box for one in drive.panel.window.widgets if one.takes_focus and one.subject != "wave"]
            for number, one in enumerate(boxes):  # no control lies under another
                for other in boxes[:number]:
                    assert not (one.x < other.right and other.x < one.right and one.y < other.top and other.y < one.top)
    assert drive.panel.status.text == ""


def test_pixels_that_are_not_finite_are_marked_and_said():
    wave = np.ones((64, 64), np.complex64)
    wave[10:12, 20] = np.nan
    drive = Driver(LivePanel(wave, kv=300, pixel=0.05))
    assert drive.panel.status.text.startswith("2 pixels are not finite")
    scale = drive.panel.picture.box.height / 64
    left = int(drive.panel.picture.box.width - 64 * scale) // 2
    assert drive.pixels()[int(11 * scale), left + int(20.5 * scale)].tolist() == [255, 0, 200]
    pyplot.close("all")


@pytest.mark.parametrize("tilt", [["-1,0.5"], ["-1", "0.5"], ["-1", ".5e0"]])
def test_tilt_and_coefficients_of_the_program_may_be_negative(tilt, tmp_path, monkeypatch):
    given = {}
    monkeypatch.setattr(zentrix, "panel", lambda wave, **options: given.update(options) or mock.Mock())
    np.save(tmp_path / "wave.npy", np.ones((8, 8), complex))
    options = ["--kv", "300", "--pixel", "0.05", "--A1", "-3@20", "--tilt", *tilt, str(tmp_path / "wave.npy")]
    assert program.main(options) == 0
    assert (given["tilt"], given["A1"]) == ((-1, 0.5), "-3@20")
    with pytest.raises(SystemExit):
        program.main([*options, "--tilt", "1,2,3"])


def test_panel_needs_an_interactive_backend_and_matplotlib_only_then(tmp_path, capsys):
    with pytest.raises(RuntimeError, match="interactive backend of matplotlib; the present one is 'agg'"):
        zentrix.panel(np.ones((8, 8), complex), kv=300, pixel=0.05)
    np.save(tmp_path / "wave.npy", np.ones((8, 8), complex))
    options = ["--kv", "300", "--pixel", "0.05", "--A1", "-3@20", "--backend", "agg"]
    for file, text in (("wave.npy", "interactive backend"), ("missing.npy", "missing.npy")):
        assert program.main([str(tmp_path / file), *options]) == 1 and text in capsys.readouterr().err
    check = "import sys, zentrix; sys.exit('matplotlib' in sys.modules)"
    environment = {**os.environ, "PYTHONPATH": str(pathlib.Path(zentrix.__file__).parents[1])}
    assert subprocess.run([sys.executable, "-c", check], env=environment, check=False).returncode == 0


def estimable():
    """The aberrated wave of a phase object without symmetry, and its lens."""
    y, x = np.indices((128, 128))
    phase = np.zeros((128, 128))
    for i in range(40):
        square = (x - (i * 37 + i * i * 11) % 128) ** 2 + (y - (i * 53 + i * i * 7) % 128) ** 2
        phase += 0.9 * np.exp(-square / (2.4 + 0.1 * (i % 9)))
    lens = {"kv": 300, "pixel": 0.05, "C1": -40, "A1": (9, 30)}
    return zentrix.aberrate(np.exp(1j * phase), **lens), lens


def test_estimate_moves_the_knobs_and_is_one_step_of_undo():
    wave, lens = estimable()
    panel = LivePanel(wave, kv=300, pixel=0.05)
    Driver(panel)
    panel.estimate(free="C1,A1")
    while panel.is_estimating:  # the Agg canvas has no event loop for the timer
        panel._poll_search()
    assert panel.found.determined and panel.status.text.startswith("Estimated: C1"), panel.found
    assert panel.parameters["C1"] == pytest.approx(lens["C1"], abs=0.3)
    assert panel.parameters["A1"] == pytest.approx(lens["A1"], abs=1.0)
    panel.undo()
    assert "C1" not in panel.parameters and "A1" not in panel.parameters
    panel.close()


@pytest.mark.parametrize(
    ("given", "action", "known"),
    [
        ({}, None, {}),
        ({}, lambda drive: drive.press("No envelope"), {"vibration": 0}),
        ({}, lambda drive: drive.panel.set(focus_spread=0), {"vibration": 0}),
        ({"vibration": 0}, None, {"vibration": 0}),
        ({"convergence": 0}, lambda drive: drive.press("No envelope"), {}),
        ({"focus_spread": 3}, None, {"focus_spread": 3}),
        ({"focus_spread": 3}, lambda drive: drive.panel.set(vibration=0), {"focus_spread": 3}),
    ],
)
def test_widths_of_zero_are_known_for_an_estimate_if_they_were_given(given, action, known):
    panel = LivePanel(np.ones((16, 16), complex), kv=300, pixel=0.05, **given)
    if action:
        action(Driver(panel))
    assert panel.model.for_search()[1] == {"kv": 300, "pixel": 0.05, **known}
    panel.close()


def endless(wave, progress, **options):
    while progress(0.4, {"C1": (-40.0, 0.0), "A1": (9.0, 30.0)}):
        time.sleep(0.001)
    raise RuntimeError("nobody wants to know that it was stopped")


@pytest.mark.parametrize(
    ("action", "C1", "applied", "steps"),
    [
        (lambda drive: drive.keys("e"), 3, [], 1),
        (lambda drive: drive.keys("ctrl+z"), 3, [], 1),
        (lambda drive: drive.keys("ctrl+y"), 4, [], 2),
        (lambda drive: drive.panel.edit("C1", value=7), 7, [], 2),
        (lambda drive: drive.panel.set(C1=7), 7, [], 2),
        (lambda drive: drive.press("Apply"), None, [{"kv": 300, "pixel": 0.05, "C1": 3}], 2),
        (lambda drive: drive.canvas.callbacks.process("close_event", None), 3, [], 1),
    ],
)
def test_estimate_ends_at_other_actions_and_leaves_nothing(action, C1, applied, steps, monkeypatch):
    monkeypatch.setattr(library, "estimate", endless)
    panel = LivePanel(np.ones((16, 16), complex), kv=300, pixel=0.05)
    drive = Driver(panel)
    for value in (3, 4):
        panel.set(C1=value)
    panel.undo()
    drive.press("Estimate")
    while panel.parameters["C1"] != -40:
        panel._poll_search()
    action(drive)
    assert not panel.is_estimating and panel.parameters.get("C1") == C1 and "A1" not in panel.parameters
    panel._poll_search()  # a timer that was late
    assert panel.parameters.get("C1") == C1 and panel.applied == applied
    assert [panel.model.history.move(-1) for _ in range(3)] == [True] * steps + [False] * (3 - steps)
    panel.close()
