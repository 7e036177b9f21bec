"""The controls to the right of the picture, built for one page, one size and one resolution."""

from .. import _core
from .field import Field
from .knob import Knob
from .number_text import number_text
from .pages import ANGLE_STEP, COEFFICIENTS
from .pen import FAINT, Box
from .shades import DISPLAYS
from .widgets import Arrows, Button, HoldButton, Label

WIDTH = 3.3  #: inches, with margins
_ROW, _LINE = 0.26, 0.2
_DISPLAY_TEXTS = ("Real", "Imag.", "Modulus", "Log", "Phase")
_MEANINGS = {name: meaning for name, (meaning, _, _) in _core.coefficients().items()}
_HELP = (
    "Knobs: drag, wheel, arrow keys, Page Up and Down",
    "Fields: type, wheel, arrow keys. Shift: a tenth",
    "Tab: next control. Esc: leaves a field",
    "b held: before. t: transfer function. c: colours",
    "1 to 5: display. Ctrl+Z, Ctrl+Y: undo, redo",
    "Ctrl+C: copies the call. Ctrl+S: saves. e: estimate",
)


class Column:
    """`widgets` from top to bottom. The panel has the actions that are not edits of the model."""

    def __init__(self, panel, left, top, dpi):
        self._panel, self._model = panel, panel.model
        self._left, self._top, self._dpi = left, top, dpi
        self.widgets = []
        self._tabs()
        page = self._model.pages[panel.page]
        has_angle = any(row.has_angle for row in page.rows)
        self._headers(page, has_angle)
        y = 0.9 if has_angle else 0.72
        for row in page.rows:
            self._row(row, y)
            y += 0.86 if has_angle else 0.58
        self._buttons(3.72)
        self._help(5.38)

    def box(self, x, y, width, height):
        """From inches, y downwards from the column's top."""
        x0, x1 = (round(self._left + value * self._dpi) for value in (x, x + width))
        y0, y1 = (round(self._top - value * self._dpi) for value in (y + height, y))
        return Box(x0, y0, x1 - x0, y1 - y0)

    def _add(self, widget, subject=None):
        widget.subject = subject
        self.widgets.append(widget)

    def _tabs(self):
        titles = [page.title for page in self._model.pages]
        total = sum(len(title) + 3 for title in titles)
        x = 0.0
        for number, title in enumerate(titles):
            width = (WIDTH - 0.1) * (len(title) + 3) / total
            self._add(
                Button(
                    self.box(x, 0.06, width, 0.28),
                    title,
                    lambda number=number: self._panel.show_page(number),
                    is_on=lambda number=number: self._panel.page == number,
                )
            )
            x += width

    def _headers(self, page, has_angle):
        if has_angle:
            self._add(Label(self.box(0.05, 0.42, 1.5, _LINE), f"Modulus ({page.rows[0].unit})"))
            self._add(Label(self.box(2.0, 0.42, 1.1, _LINE), "Angle (deg)", across="center"))
        y = 0.62 if has_angle else 0.46
        self._add(Label(self.box(0.05, y, 0.6, _LINE), "Value", size=8, colour=FAINT))
        self._add(Label(self.box(1.2, y, 0.6, _LINE), "Step", size=8, colour=FAINT))

    def _row(self, row, y):
        name, model = row.name, self._model

        def hint():
            value, degrees = model.values[name]
            meaning = f"{name}, {_MEANINGS[name]}" if name in COEFFICIENTS else row.label
            angle = f" at {number_text(degrees)}°" if row.has_angle else ""
            return f"{meaning}: {number_text(value)} {row.unit}{angle}"

        def step(notches, fine):
            change = notches * model.steps[name] * (0.1 if fine else 1)
            self._panel.edit(name, value=model.values[name][0] + change)

        def value():
            return model.values[name][0]

        def put(new):
            self._panel.edit(name, value=new)

        self._add(Field(self.box(0.05, y, 0.92, _ROW), value, put, step, hint), name)
        self._add(Arrows(self.box(0.98, y, 0.18, _ROW), step))
        self._add(
            Field(
                self.box(1.2, y, 0.62, _ROW),
                lambda: model.steps[name],
                lambda new: model.set_step(name, new),
                hint=lambda: f"Step of {name}: of the arrows, the wheel and the arrow keys",
            )
        )
        self._add(Label(self.box(0.05, y + _ROW + 0.02, 1.8, _LINE), row.label, size=8.5))
        if row.has_angle:
            self._knob(row, y, hint)
        else:
            self._add(Label(self.box(1.88, y, 0.7, _ROW), row.unit))

    def _knob(self, row, y, hint):
        name, model = row.name, self._model

        def step(notches, fine):
            turned = notches * (1 if fine else ANGLE_STEP)
            self._panel.edit(name, degrees=model.values[name][1] + turned)

        self._add(
            Knob(
                self.box(2.1, y - 0.22, 0.82, 0.82),
                lambda: model.values[name][1],
                lambda new: self._panel.edit(name, degrees=new),
                step,
                hint,
            ),
            name,
        )
        self._add(Arrows(self.box(2.98, y + 0.06, 0.18, _ROW), step, "Click: 5 degrees. Shift: one degree"))

    def _buttons(self, y):
        panel, model = self._panel, self._model
        self._add(Label(self.box(0.05, y, 1, _LINE), "Display"))
        for number, (display, text) in enumerate(zip(DISPLAYS, _DISPLAY_TEXTS)):
            self._add(
                Button(
                    self._cell(y + 0.2, number),
                    text,
                    lambda display=display: panel.show_display(display),
                    {"log": "Logarithm of the modulus"}.get(display, display.capitalize()),
                    is_on=lambda display=display: model.display == display,
                )
            )
        transfer = Button(
            self._cell(y + 0.54, 0, 2),
            "Transfer function",
            panel.toggle_overlay,
            "sin χ with the envelope of the microscope page; blue where it is undersampled (t)",
            is_on=lambda: panel.picture.has_overlay,
        )
        colours = Button(
            self._cell(y + 0.54, 2, 1.5),
            "Phase colours",
            panel.toggle_colour,
            "Colours for phases (c)",
            is_on=lambda: model.colour,
        )
        before = HoldButton(self._cell(y + 0.54, 3.5, 1.5), "Before", panel.show_before, "Held: the source (b)")
        actions = (
            ("Undo", panel.undo, "Ctrl+Z"),
            ("Redo", panel.redo, "Ctrl+Y"),
            ("Copy call", panel.copy_call, "Copies the parameters as a call of zentrix.correct (Ctrl+C)"),
            ("Save", panel.save, "Writes the corrected wave at full size, its picture and the parameters (Ctrl+S)"),
            ("Apply", panel.apply, "The corrected wave becomes the source, all coefficients zero. Undo takes it back"),
        )
        self.widgets += [transfer, colours, before]
        for number, (text, action, hint) in enumerate(actions):
            self._add(Button(self._cell(y + 0.88, number), text, action, hint))
        estimate = Button(
            self._cell(y + 1.22, 0, 2),
            "Estimate",
            panel.estimate,
            "Finds C1, A1, B2, A2, C3, S3 from the wave itself; pressed again, it stops (e)",
            is_on=lambda: panel.is_estimating,
        )
        no_envelope = Button(
            self._cell(y + 1.22, 2, 1.5),
            "No envelope",
            panel.toggle_no_envelope,
            "For Estimate: the wave is not damped. Otherwise widths that are all zero are taken as unknown",
            is_on=lambda: model.has_no_envelope,
        )
        self.widgets += [estimate, no_envelope]

    def _cell(self, y, first, cells=1):
        width = (WIDTH - 0.1) / 5
        return self.box(first * width, y, cells * width, 0.3)

    def _help(self, y):
        for number, text in enumerate(_HELP):
            self._add(Label(self.box(0.05, y + number * 0.19, WIDTH - 0.15, 0.19), text, size=8, colour=FAINT))
