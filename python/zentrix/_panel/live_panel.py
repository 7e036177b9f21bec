"""What zentrix.panel returns: the model, its window, and what buttons and keys do."""

from matplotlib import pyplot

from . import library
from .clipboard import copy_text
from .model import Model
from .panel_column import WIDTH, Column
from .pen import FAINT, INK, WRONG, Box
from .picture import Picture
from .search import Search, summary
from .shades import DISPLAYS
from .widgets import Status
from .window import Window

_STATUS_HEIGHT = 0.26  # inches
_SEARCH_POLL = 100  # ms
_KEY_REPEAT = 80  # ms; a held key may send releases in between, closely followed by presses


class LivePanel:
    """A window with a wave and its knobs. See zentrix.panel for what scripts use."""

    def __init__(self, wave, *, title="Zentrix", **options):
        self.model = Model(wave, **options)
        self.page = 0
        self.picture = self.status = self.pointer = None
        self._listeners = []
        self._hovered = self._hinted = None  #: widget under the mouse, and the one whose hint is shown
        self._message = (_about(self.model.not_finite), INK)
        self.window = Window(
            title,
            self._make_widgets,
            on_grip=self.model.history.seal,
            on_key=self._on_key,
            on_hover=self._on_hover,
            on_drawn=self._show_message,
            report=self._complain,
        )
        self._before_timer = self.window.timer(_KEY_REPEAT, lambda: self.show_before(False))
        self._search, self.found = None, None  #: the running search; the zentrix.Estimate of the last one
        self._search_timer = self.window.timer(_SEARCH_POLL, self._poll_search)
        self.window.canvas.mpl_connect("close_event", lambda event: self._give_up_search())
        self.window.rebuild()

    # For scripts

    @property
    def parameters(self):
        return self.model.parameters

    @property
    def applied(self):
        return list(self.model.history.state.applied)

    @property
    def figure(self):
        return self.window.figure

    def corrected(self):
        return self.model.corrected()

    def set(self, **changes):
        self._end_search()
        self.model.set_values(changes)
        self.changed()

    def on_change(self, function):
        self._listeners.append(function)

    def show(self):
        self.window.show()

    def wait(self):
        pyplot.show(block=True)

    def close(self):
        pyplot.close(self.figure)

    # What controls do

    def edit(self, name, value=None, degrees=None):
        self._end_search()
        if self.model.set_value(name, value, degrees, control=(name, value is None)):
            self.changed(name)

    def changed(self, name=None):
        """The named parameter has changed; without a name, several or the source."""
        self.say("")
        self._redraw(name)
        for function in self._listeners:
            function(self)

    def undo(self):
        if not self._end_search():  # the knobs show that, not the last edit
            self._move(-1, "Nothing to undo.")

    def redo(self):
        self._end_search()
        self._move(1, "Nothing to redo.")

    def apply(self):
        self._end_search()
        self.model.apply()
        self.changed()
        self.say("The corrected wave is the source now. Undo takes it back.")

    @property
    def is_estimating(self):
        return self._search is not None

    def estimate(self, free=library.FREE):
        """Starts a search for these coefficients; the knobs follow it. Stops one that is running."""
        if self._end_search():
            return
        source, optics = self.model.for_search()
        self._search = Search(source, free, optics)
        self._poll_search()

    def toggle_no_envelope(self):
        self._end_search()
        self.model.has_no_envelope = not self.model.has_no_envelope
        self._redraw()

    def _end_search(self):
        """The panel is as before the search, whose result is not used. False if none is running."""
        if not self._give_up_search():
            return False
        self.say("Stopped. The coefficients are as before.")
        self._redraw()
        for function in self._listeners:
            function(self)
        return True

    def _give_up_search(self):
        search, self._search = self._search, None
        if search is None:
            return False
        search.stop()
        self._search_timer.stop()
        self.model.end_preview()
        return True

    def _poll_search(self):
        search = self._search
        if search is None:
            return
        is_running = search.is_running  # before the best is taken
        best = search.take_best()
        if is_running:
            self._search_timer.start()
            if best:
                self.model.preview(best)
                self.changed()
            if self._search is search:  # no listener has ended it
                self.say(f"Estimating, {100 * search.fraction:.0f} % ...")
            return
        self._search, self.found = None, search.found
        self.model.end_preview()
        if search.found is not None and any(one.determined for one in search.found.coefficients.values()):
            self.model.put_coefficients(_values(search.found))
        self.changed()
        self.say(search.problem or summary(search.found), WRONG if search.problem else INK)

    def copy_call(self):
        text = self.model.call_text()
        if copy_text(self.window.canvas, text):
            self.say("Copied: " + text.splitlines()[-1])
        else:
            print(text)
            self.say("Printed: " + text.splitlines()[-1])

    def save(self, file=None):
        paths = self.model.save(file)
        self.say(f"Saved {paths[0]}, .png and .json")
        return paths

    def show_page(self, number):
        self.page = number
        self.window.focus(None)
        self.window.rebuild()

    def show_display(self, display):
        self.model.display = display
        self._redraw()

    def toggle_overlay(self):
        self.picture.has_overlay = not self.picture.has_overlay
        self._redraw()

    def toggle_colour(self):
        self.model.colour = not self.model.colour
        self._redraw()

    def show_before(self, is_on):
        if self.picture.before != is_on:
            self.picture.before = is_on
            self._redraw()

    def say(self, text, colour=INK):
        """In the status line, until the mouse comes to another control; an empty text is what it says at rest."""
        if text:
            self._hinted = None
        self._message = (text or _about(self.model.not_finite), colour)
        self._show_message()
        self.window.request()

    # The window

    def _move(self, steps, otherwise):
        if self.model.history.move(steps):
            self.changed()
        else:
            self.say(otherwise)

    def _redraw(self, name=None):
        for widget in self.window.widgets:
            widget.dirty = widget.dirty or name is None or widget.subject in (name, "wave")
        self.window.request()

    def _make_widgets(self, box, dpi):
        status, column = round(_STATUS_HEIGHT * dpi), round(WIDTH * dpi)
        old = self.picture
        width = max(32, box.width - column)
        self.picture = Picture(Box(0, status, width, max(32, box.height - status)), self.model)
        if old is not None:
            self.picture.before, self.picture.has_overlay = old.before, old.has_overlay
        middle = round(0.68 * box.width)
        self.status = Status(Box(4, 0, middle - 4, status), "", size=8.5)
        self.pointer = Status(Box(middle, 0, round(box.width) - 6 - middle, status), "", size=8.5, across="right")
        self._show_message()
        controls = Column(self, width + 0.08 * dpi, box.height, dpi).widgets
        return [*controls, self.picture, self.status, self.pointer]

    def _show_message(self):
        if self.status is not None:
            problem, hint = self.picture.problem, self._hinted.hint() if self._hinted is not None else ""
            self.status.show(*((problem, WRONG) if problem else (hint, INK) if hint else self._message))

    def _complain(self, text):
        self.say(text, WRONG)

    def _on_hover(self, widget, x, y):
        if widget is self.picture and widget is not None:
            self.pointer.show(self.picture.value_text(x, y), FAINT)
        elif self.pointer is not None:
            self.pointer.show("", FAINT)
        if widget is not self._hovered:
            self._hovered = self._hinted = widget
        self._show_message()

    def _on_key(self, key, is_down):
        if key == "b":
            self._before_timer.stop()
            if is_down:
                self.show_before(True)
            else:
                self._before_timer.start()
        elif is_down:
            commands = {
                "e": self.estimate,
                "t": self.toggle_overlay,
                "c": self.toggle_colour,
                "ctrl+z": self.undo,
                "ctrl+y": self.redo,
                "ctrl+Z": self.redo,
                "ctrl+c": self.copy_call,
                "ctrl+s": self.save,
                **{str(number + 1): _show(self, display) for number, display in enumerate(DISPLAYS)},
            }
            commands.get(key, lambda: None)()


def _show(panel, display):
    return lambda: panel.show_display(display)


def _values(found):
    """name -> (modulus, degrees) of the coefficients that are determined."""
    known = {name: one.value for name, one in found.coefficients.items() if one.determined}
    return {name: value if isinstance(value, tuple) else (value, 0.0) for name, value in known.items()}


def _about(not_finite):
    """What the status line says at rest."""
    count = int(not_finite.sum())
    if count == 0:
        return ""
    pixels = "1 pixel is" if count == 1 else f"{count} pixels are"
    return f"{pixels} not finite, marked in magenta; the mean of the others stands for them."
