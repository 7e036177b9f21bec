"""A matplotlib window of widgets: drawing in parts, mouse and keys. It knows no wave."""

import functools
import logging

from matplotlib import pyplot
from matplotlib.figure import Figure

from .pen import FACE, Box, Pen, union

_WIDTH, _HEIGHT = 10.4, 7.1  # inches
_KEY_NAMES = {"return": "enter", "space": " ", "page_up": "pageup", "page_down": "pagedown", "iso_left_tab": "tab"}
_EVENTS = ("button_press", "button_release", "motion_notify", "scroll", "key_press", "key_release")
_log = logging.getLogger("zentrix")


class _PanelFigure(Figure):
    """Draws widgets instead of artists."""

    draw_widgets = None

    def draw(self, renderer):
        self.draw_widgets(renderer)


def _guarded(handler):
    """No error of a handler reaches the backend, which may end the program or lose the window."""

    @functools.wraps(handler)
    def call(self, *arguments):
        try:
            handler(self, *arguments)
        except Exception as problem:  # every one: nobody above could do more
            if not isinstance(problem, (ValueError, TypeError, RuntimeError, OSError)):
                _log.exception("panel")
            self._report(str(problem) or type(problem).__name__)

    return call


class Window:
    """make_widgets(box, dpi)      widgets for a window of this size, drawn in this order
    on_grip()                      a mouse button goes down or up, or the focus moves: later edits are another step
    on_key(key, is_down)           a key that no widget took, with "ctrl+" but without "shift+"
    on_hover(widget, x, y)         the mouse moved over a widget or, with None, off all of them
    on_drawn()                     widgets were drawn; it may make others dirty, which are drawn at once
    report(text)                   an error in a handler
    """

    def __init__(self, title, make_widgets, on_grip, on_key, on_hover, on_drawn, report):
        self._make_widgets, self._on_grip, self._on_key, self._on_hover = make_widgets, on_grip, on_key, on_hover
        self._on_drawn, self._report = on_drawn, report
        self.widgets, self._built_for = [], None
        self.focused = self._gripped = None
        self._is_requested, self._has_shift = False, False
        dpi = pyplot.rcParams["figure.dpi"]
        size = tuple(round(length * dpi) / dpi for length in (_WIDTH, _HEIGHT))  # whole pixels
        with pyplot.rc_context({"toolbar": "None"}):
            self.figure = pyplot.figure(_unused(title), figsize=size, facecolor=FACE, FigureClass=_PanelFigure)
        self.figure.draw_widgets = self._draw_all
        self.canvas, self._pen = self.figure.canvas, Pen(self.figure, None)
        manager = self.canvas.manager
        if getattr(manager, "key_press_handler_id", None) is not None:
            self.canvas.mpl_disconnect(manager.key_press_handler_id)  # its keys, such as q and s, are typed here
        for name in _EVENTS:
            self.canvas.mpl_connect(f"{name}_event", getattr(self, f"_{name}"))
        self.canvas.mpl_connect("close_event", self._closed)
        self._timers, self._is_closed = [], False
        self._refresh_timer = self.timer(1, self.refresh)

    def timer(self, milliseconds, call):
        """Calls once after each start()."""
        timer = self.canvas.new_timer(milliseconds, [(call, (), {})])
        timer.single_shot = True
        self._timers.append(timer)
        return timer

    def _closed(self, event):
        self._is_closed = True
        for timer in self._timers:  # a backend would complain about one that ends later
            timer.stop()

    def show(self):
        manager = self.canvas.manager
        if pyplot.isinteractive() or hasattr(manager, "window"):
            self.figure.show(warn=False)

    # Drawing

    def rebuild(self):
        """Makes all widgets again, for example of another page."""
        self._built_for = None
        self.request()

    def request(self):
        """Dirty widgets are drawn soon. Events that are waiting come first, so that a fast drag skips pictures."""
        if not self._is_requested and not self._is_closed:
            try:
                self._refresh_timer.start()
                self._is_requested = True
            except RuntimeError:  # no event loop yet: the backend draws all of the window when it has one
                self._built_for = None

    @_guarded
    def refresh(self):
        """Draws dirty widgets now."""
        self._is_requested = False
        if self._built_for != self._present_size():
            self.canvas.draw()
            self._show([Box(0, 0, *self.figure.bbox.size)])
            return
        pen, drawn = self._pen_on(self.canvas.get_renderer()), []
        for _ in range(2):  # the second time what on_drawn has changed, such as the status line
            for widget in [one for one in self.widgets if one.dirty]:
                widget.dirty = False
                widget.draw(pen)
                drawn.append(widget.box)
            self._on_drawn()
        if drawn:
            self._show(drawn)

    def _show(self, boxes):
        if self.canvas.manager is None or not hasattr(self.canvas, "blit"):
            return
        if self.canvas.device_pixel_ratio % 1:  # Qt leaves a line open at the edge of a part
            boxes = [Box(0, 0, *self.figure.bbox.size)]
        self.canvas.blit(union(boxes))

    def _pen_on(self, renderer):
        self._pen.renderer = renderer
        return self._pen

    def _present_size(self):
        return (*self.figure.bbox.size, self.figure.dpi)

    @_guarded
    def _draw_all(self, renderer):
        size = self._present_size()
        window = Box(0, 0, *self.figure.bbox.size)
        if self._built_for != size:
            index = self.widgets.index(self.focused) if self.focused in self.widgets else None
            self.widgets, self._gripped = self._make_widgets(window, self.figure.dpi), None
            self._built_for, self.focused = size, None
            self._pen.forget()
            if index is not None and index < len(self.widgets):
                self.focus(self.widgets[index])
        pen = self._pen_on(renderer)
        pen.rectangle(window, FACE)
        for widget in self.widgets:
            widget.draw(pen)
            widget.dirty = False
        self._on_drawn()
        for widget in [one for one in self.widgets if one.dirty]:
            widget.draw(pen)
            widget.dirty = False

    # Mouse and keys

    def focus(self, widget):
        if widget is self.focused:
            return
        self._on_grip()
        if self.focused is not None:
            self.focused.focus(False)
        self.focused = widget
        if widget is not None:
            widget.focus(True)

    def _at(self, x, y):
        return next((one for one in reversed(self.widgets) if one.box.holds(x, y)), None)

    @_guarded
    def _button_press(self, event):
        if event.button != 1:
            return
        widget = self._at(event.x, event.y)
        if widget is None or widget.takes_focus:
            self.focus(widget)
        if widget is not None:
            self._gripped = widget
            self._on_grip()
            widget.press(event.x, event.y, self._is_fine(event))
        self.request()

    @_guarded
    def _motion_notify(self, event):
        if self._gripped is not None:
            self._gripped.drag(event.x, event.y, self._is_fine(event))
        self._on_hover(self._gripped or self._at(event.x, event.y), event.x, event.y)
        self.request()

    @_guarded
    def _button_release(self, event):
        if event.button == 1 and self._gripped is not None:
            gripped, self._gripped = self._gripped, None
            gripped.release()
            self._on_grip()
            self.request()

    @_guarded
    def _scroll(self, event):
        widget = self._at(event.x, event.y)
        if widget is not None:
            notches = int(event.step) or (1 if event.step > 0 else -1)
            widget.scroll(notches, self._is_fine(event))
            self._on_hover(widget, event.x, event.y)
            self.request()

    @_guarded
    def _key_press(self, event):
        key = _key_of(event)
        given = event.key or ""
        if len(given) > 1:  # a letter does not tell
            self._has_shift = "shift" in given or given == "iso_left_tab"
        fine = "shift" in given
        if key == "tab":
            self._move_focus(-1 if self._has_shift else 1)
        elif self.focused is None or key.startswith("ctrl+") or not self.focused.key(key, fine):
            if key == "escape":
                self.focus(None)
            self._on_key(key, True)
        self.request()

    @_guarded
    def _key_release(self, event):
        key = _key_of(event)
        if key == "shift":
            self._has_shift = False
        self._on_key(key, False)

    def _is_fine(self, event):
        return self._has_shift or "shift" in (event.key or "")

    def _move_focus(self, step):
        ring = [one for one in self.widgets if one.takes_focus]
        at = ring.index(self.focused) + step if self.focused in ring else 0
        self.focus(ring[at % len(ring)])


def _key_of(event):
    """Lower-case names, the same for all backends."""
    key = event.key or ""
    if len(key) > 1:
        key = key.replace("shift+", "").replace("cmd+", "ctrl+").replace("super+", "ctrl+")
    return _KEY_NAMES.get(key, key)


def _unused(title):
    """A figure's title may be there already: the second panel is "title (2)"."""
    taken, count, candidate = set(pyplot.get_figlabels()), 1, title
    while candidate in taken:
        count += 1
        candidate = f"{title} ({count})"
    return candidate
