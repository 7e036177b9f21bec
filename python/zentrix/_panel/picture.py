"""The wave on the screen with scale bar, legend and overlay."""

import math

import numpy as np

from .number_text import length_text, number_text, round_length
from .overlay import Overlay
from .pen import Box
from .shades import colour_wheel, displayed, picture_of
from .widgets import Widget

_BACK, _LIGHT, _DARK = "#262626", "#ffffff", "#000000"


class Picture(Widget):
    """Draws the model's wave as large as fits. After a failure, with its text in `problem`, the last picture stays."""

    subject = "wave"
    takes_focus = True  # so that a click on it takes the focus from a field

    def __init__(self, box, model):
        super().__init__(Box(*map(int, box)))
        self._model, self._overlay = model, Overlay(model)
        self.before = self.has_overlay = False
        self.problem = ""
        self._wave = self._pixels = self._limits = None
        self._wheel = None

    def draw(self, pen):
        pen.rectangle(self.box, _BACK)
        try:
            self._wave, marks = self._model.shown((self.box.height, self.box.width), self.before)
            self.problem = ""
        except (ValueError, TypeError, RuntimeError) as problem:
            self.problem = str(problem)
        else:
            model = self._model
            pixels, self._limits = picture_of(self._wave, model.display, model.colour, marks)
            self._pixels = self._enlarged(pixels)
        if self._pixels is None:
            return
        frame = self._frame()
        pen.image(frame.x, frame.y, self._pixels)
        self._draw_scale_bar(pen, frame)
        self._draw_legend(pen, frame)
        if self.before:
            _draw_caption(pen, frame.x, frame.top, "before")
        if self.has_overlay:
            self._draw_overlay(pen, frame)

    def _draw_overlay(self, pen, frame):
        gap = 6 * pen.point
        side = min(0.36 * min(self.box.width, self.box.height), 2.6 * 72 * pen.point)
        try:
            self._overlay.draw(pen, (frame.right - gap, frame.top - gap), side)
        except (ValueError, ArithmeticError) as problem:
            self.problem = self.problem or str(problem)

    def _enlarged(self, pixels):
        """As large as fits, by repeated pixels. A picture that is too large loses pixels."""
        rows, columns = pixels.shape[:2]
        scale = min(self.box.height / rows, self.box.width / columns)
        if 1 <= scale < 1.1:  # sharper
            return pixels
        high, wide = max(1, int(rows * scale)), max(1, int(columns * scale))
        if (high, wide) == (rows, columns):
            return pixels
        return pixels[np.arange(high) * rows // high][:, np.arange(wide) * columns // wide]

    def _frame(self):
        """Where the picture is."""
        high, wide = self._pixels.shape[:2]
        x, y = self.box.middle
        return Box(int(x - wide / 2), int(y - high / 2), wide, high)

    def _draw_scale_bar(self, pen, frame):
        width = self._model.source.shape[1] * self._model.values["pixel"][0]
        if not 0 < width < 1e12:
            return
        length = round_length(0.3 * width)
        unit = pen.point
        bar = Box(frame.x + 10 * unit, frame.y + 10 * unit, length / width * frame.width, 4 * unit)
        text = length_text(length)
        backing = max(bar.width, pen.text_width(text, 10)) + 10 * unit
        pen.rectangle(Box(bar.x - 5 * unit, bar.y - 5 * unit, backing, 26 * unit), _DARK)
        pen.rectangle(bar, _LIGHT)
        pen.text(bar.x, bar.top + 7.5 * unit, text, 10, _LIGHT)

    def _draw_legend(self, pen, frame):
        unit = pen.point
        if self._limits is not None:
            text = _limits_text(*self._limits)
            width = pen.text_width(text, 8) + 8 * unit
            if width < 0.6 * frame.width:
                pen.rectangle(Box(frame.right - width - 5 * unit, frame.y + 5 * unit, width, 14 * unit), _DARK)
                pen.text(frame.right - 9 * unit, frame.y + 12 * unit, text, 8, _LIGHT, "right")
            return
        size = int(52 * unit)
        if self._wheel is None or len(self._wheel) != size:
            self._wheel = colour_wheel(size)
        back = Box(frame.right - size - 41 * unit, frame.y + 5 * unit, size + 36 * unit, size + 28 * unit)
        if back.width > 0.5 * frame.width:
            return
        pen.rectangle(back, _DARK)
        x, y = back.middle
        pen.image(x - size / 2, y - size / 2, self._wheel)
        away = size / 2 + 8 * unit
        for dx, dy, text in ((1, 0, "0"), (0, 1, "π/2"), (-1, 0, "π"), (0, -1, "−π/2")):
            pen.text(x + dx * away, y + dy * away, text, 8, _LIGHT, "center")

    def value_text(self, x, y):
        """Position and value under the mouse."""
        if self._pixels is None or self._wave is None:
            return ""
        frame = self._frame()
        if not frame.holds(x, y):
            return ""
        across, down = (x - frame.x) / frame.width, (frame.top - y) / frame.height
        rows, columns = self._wave.shape
        pixel = self._wave[min(rows - 1, int(down * rows)), min(columns - 1, int(across * columns))]
        value = float(displayed(np.array([pixel]), self._model.display)[0])
        high, wide = self._model.source.shape
        size = self._model.values["pixel"][0]
        position = f"x {across * wide * size:.4g} nm, y {down * high * size:.4g} nm"
        return f"{position}: {self._model.display} {number_text(float(f'{value:.4g}'))}"


def _limits_text(black, white):
    """Three digits of their difference."""
    unit = 10.0 ** (math.floor(math.log10(white - black)) - 2) if white > black else 0.0
    low, high = (f"{round(limit / unit) * unit:.6g}" if unit else f"{limit:.6g}" for limit in (black, white))
    return f"black {low}, white {high}"


def _draw_caption(pen, left, top, text):
    unit = pen.point
    pen.rectangle(Box(left, top - 20 * unit, pen.text_width(text, 10) + 12 * unit, 20 * unit), _DARK)
    pen.text(left + 6 * unit, top - 10 * unit, text, 10, _LIGHT)
