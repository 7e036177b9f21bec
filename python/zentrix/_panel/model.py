"""What the panel shows and does, without a display: parameters, undo, the corrected wave, files."""

import json
import pathlib

import numpy as np

from . import library
from .history import History, State
from .number_text import round_length, tidy, wrapped
from .pages import COEFFICIENTS, PAGES, WIDTHS, microscope
from .reduced_wave import reduced_marks, reduced_size, reduced_wave
from .shades import DISPLAYS
from .wave_files import paths_of, unused_paths, write_all


class Model:
    """A wave and the aberrations that are removed from it."""

    def __init__(self, wave, *, show="phase", colour=False, save="corrected.npy", nan="mean", **optics):
        if show not in DISPLAYS:
            raise ValueError(f"show is one of {', '.join(DISPLAYS)}, not {show!r}.")
        self.original, self.not_finite = library.checked_wave(wave)
        if nan != "mean":
            raise ValueError(f'nan is "mean" in the panel, not {nan!r}.')
        for name in ("kv", "wavelength"):
            if name in optics and optics[name] is None:
                del optics[name]
        library.check(optics)
        self.fixed = {name: optics[name] for name in ("tilt", "envelope") if name in optics}
        if "tilt" in optics:
            self.fixed["tilt"] = library.tilt_of(optics["tilt"])
        self.pages = (*PAGES, microscope("wavelength" in optics))
        state = State(library.start_values(optics, self.pages[-1].rows))
        self.history = History(state)
        self._preview = None  # values that are shown in place of those of the history
        self.steps = {row.name: row.step or self._percent_of(row.name) for page in self.pages for row in page.rows}
        self.display, self.colour, self.file = show, colour, pathlib.Path(save)
        # A width that is zero may just not be known, unless that was said.
        self.has_no_envelope = any(name in optics for name in WIDTHS) and not any(optics.get(name) for name in WIDTHS)
        self.source = self.original
        self._source_of = ()  # the applied corrections that made `source`
        self._kept = {}

    def _percent_of(self, name):
        """A round step of about one percent."""
        return round_length(0.01 * self.values[name][0])

    # Parameters

    @property
    def values(self):
        return self.history.state.values if self._preview is None else self._preview

    @property
    def parameters(self):
        """Keywords of zentrix.correct, without coefficients and widths that are zero."""
        return {**self.optics, "nan": "mean"} if self.not_finite.any() else self.optics

    @property
    def optics(self):
        """Those of zentrix.ctf."""
        result = {}
        for page in (self.pages[-1], *self.pages[:-1]):
            for row in page.rows:
                value, degrees = self.values[row.name]
                if value or row.name not in COEFFICIENTS and row.name not in WIDTHS:
                    result[row.name] = (value, degrees) if row.has_angle else value
        return {**result, **self.fixed}

    def set_value(self, name, value=None, degrees=None, control=None):
        """One edit; false if nothing changed. Edits of the same `control` in a row are one step of undo."""
        old = self.values[name]
        new = (old[0] if value is None else tidy(value), old[1] if degrees is None else wrapped(degrees))
        if new == old:
            return False
        self.history.record(State({**self.values, name: new}, self.history.state.applied), control)
        return True

    def set_values(self, changes):
        """Several at once: name -> value as in zentrix.correct. Raises as that does, and changes nothing."""
        for name in changes:
            if name in ("tilt", "envelope"):
                raise TypeError(f"The panel has no control for {name}.")
        library.check({**self.optics, **changes})
        values = {**self.values, **library.values_of(changes, self.values)}
        if any(name in WIDTHS for name in changes):
            self.has_no_envelope = not any(values[name][0] for name in WIDTHS)
        self.history.record(State(values, self.history.state.applied))

    def put_coefficients(self, coefficients):
        """Several coefficients at once: name -> (modulus, degrees), one step of undo."""
        self.history.record(State(self._with(coefficients), self.history.state.applied))

    def preview(self, coefficients):
        """Shows these, too, until `end_preview`: no step of undo. Edits must not come before that."""
        self._preview = self._with(coefficients)

    def end_preview(self):
        """The values are those of the last edit again."""
        self._preview = None

    def _with(self, coefficients):
        return {**self.values, **{name: (value, wrapped(degrees)) for name, (value, degrees) in coefficients.items()}}

    def set_step(self, name, step):
        self.steps[name] = step

    # The wave

    def apply(self):
        """The corrected wave becomes the source, all coefficients zero. Raises as `corrected`, and changes nothing."""
        done = self.parameters
        source = self.corrected()
        self.source, self._source_of = source, (*self.history.state.applied, done)
        self._kept.clear()
        zero = {name: (0.0, 0.0) for name in COEFFICIENTS}
        self.history.record(State({**self.values, **zero}, self._source_of))

    def corrected(self):
        """Full size, complex64. Raises ValueError with the library's text, "A1 is too large."."""
        self._follow_history()
        return library.correct(self.source, self.parameters)

    def for_search(self):
        """(source, optics): what zentrix.estimate takes."""
        self._follow_history()
        optics = {name: value for name, value in self.optics.items() if value or name not in WIDTHS}
        if self.has_no_envelope:
            optics.setdefault("vibration", 0.0)
        return self.source, optics

    def shown(self, most, before=False):
        """(wave, marks of pixels that are not finite or None), at a size within `most` (rows, columns).

        The wave is a low-passed, sampled form of `corrected` or, with `before`, of the source. It is overwritten by the
        next call.
        """
        self._follow_history()
        shape = reduced_size(self.source.shape, most)
        if shape not in self._kept:
            self._kept.clear()
            self._kept[shape] = library.LiveWave(reduced_wave(self.source, shape)), self._marks(shape)
        live, marks = self._kept[shape]
        if before:
            return live.wave, marks
        parameters = self.optics
        if shape != self.source.shape:
            library.check(parameters)  # with the full range of frequencies
            parameters["pixel"] *= self.source.shape[0] / shape[0]
        return live.corrected(parameters), marks

    def _marks(self, shape):
        return reduced_marks(self.not_finite, shape) if self.not_finite.any() else None

    def _follow_history(self):
        """Undo and redo may have passed an Apply: the source is computed again, with the same bits."""
        applied = self.history.state.applied
        if applied == self._source_of:
            return
        source = self.original
        for keywords in applied:
            source = library.correct(source, keywords)
        self.source, self._source_of = source, applied
        self._kept.clear()

    # Results

    def call_text(self):
        """The present correction as Python, one line for each that was applied before."""
        calls = [*self.history.state.applied, self.parameters]
        if len(calls) == 1:
            return f"zentrix.correct(wave, {self._arguments(calls[0])})"
        lines, source = [], "wave"
        for keywords in calls:
            lines.append(f"corrected = zentrix.correct({source}, {self._arguments(keywords)})")
            source = "corrected"
        return "\n".join(lines)

    def _arguments(self, keywords):
        return ", ".join(f"{name}={_text(value)}" for name, value in keywords.items())

    def save(self, file=None):
        """Writes the corrected wave, its picture as displayed, and the parameters; returns the three paths."""
        wave = self.corrected()
        marks = self.not_finite if self.not_finite.any() else None
        paths = unused_paths(self.file) if file is None else paths_of(file)
        corrections = [*self.history.state.applied, self.parameters]
        text = json.dumps({"corrections": [self._as_json(keywords) for keywords in corrections]}, indent=2)
        write_all(paths, wave, text, self.display, self.colour, marks)
        return paths

    def _as_json(self, keywords):
        """Keywords that zentrix.correct takes as they are read from the file: "14@35", because JSON has no tuples."""
        result = dict(keywords)
        for name, value in keywords.items():
            if name in COEFFICIENTS and isinstance(value, tuple):
                result[name] = f"{value[0]!r}@{value[1]!r}"
        return result


def _text(value):
    if isinstance(value, tuple):
        return f"({', '.join(map(_text, value))})"
    if isinstance(value, (float, int, np.number)):
        return repr(int(value)) if float(value).is_integer() and abs(value) < 1e9 else repr(float(value))
    return f'"{value}"'
