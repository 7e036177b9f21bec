"""A number that can be typed."""

from .number_text import number_text, read_number
from .pen import ACCENT, EDGE, FACE, INK, ON_FACE, PAPER, WRONG, WRONG_FACE
from .widgets import Widget

_LARGEST_TEXT = 24


class Field(Widget):
    """Shows `get()`; while text is typed, each number that it forms goes to `put`.

    step(notches, fine) moves the number; None if it has no step. Text that is not a number marks the field and changes
    nothing; when the focus leaves, the field shows the present number again.
    """

    takes_focus = True

    def __init__(self, box, get, put, step=None, hint=lambda: "", suffix=""):
        super().__init__(box)
        self._get, self._put, self._step, self._hint, self._suffix = get, put, step, hint, suffix
        self._text = None  # None: not being edited
        self._caret, self._all_selected, self._is_new = 0, False, False  # new: just got the focus

    def hint(self):
        if self.is_wrong:
            return f'"{self._text}" is not a number; the value is still {number_text(self._get())}.'
        return self._hint()

    @property
    def text(self):
        return number_text(self._get()) if self._text is None else self._text

    @property
    def is_wrong(self):
        return self._text is not None and read_number(self._text) is None

    def draw(self, pen):
        pen.rectangle(self.box, FACE)
        self.draw_inside(pen, self.box.inside(1.5 * pen.point), "right")

    def draw_inside(self, pen, box, across, framed=True):
        if framed or self.has_focus or self.is_wrong:
            edge = WRONG if self.is_wrong else ACCENT if self.has_focus else EDGE
            pen.rectangle(box, WRONG_FACE if self.is_wrong else PAPER, edge, 1.3 if self.has_focus else 0.8)
        text = self.text if self.has_focus else self.text + self._suffix
        size, gap = 9.0, 3 * pen.point
        width = pen.text_width(text, size)
        room = box.width - 2 * gap if framed else box.width
        if width > room:  # a long number is rather small than cut
            size = max(5.5, size * room / width)
            width = pen.text_width(text, size)
        left = box.right - gap - width if across == "right" else box.middle[0] - width / 2
        middle = box.middle[1]
        if self.has_focus and self._all_selected and text:
            pen.rectangle(type(box)(left, box.y + gap, width, box.height - 2 * gap), ON_FACE)
        pen.text(left, middle, text, size, WRONG if self.is_wrong else INK, clip=box)
        if self.has_focus and not self._all_selected:
            x = left + pen.text_width(text[: self._caret] + "|", size) - pen.text_width("|", size)
            pen.line([(x, box.y + gap), (x, box.top - gap)], INK, 0.9)

    def focus(self, is_on):
        super().focus(is_on)
        self._text, self._is_new = None, is_on
        self._select_all()

    def press(self, x, y, fine):
        """The first click selects all, the next one puts the caret at the end of the text."""
        self._all_selected, self._is_new = self._is_new, False
        self._caret, self.dirty = len(self.text), True

    def scroll(self, notches, fine):
        if self._step is not None:
            self._text = None
            self._step(notches, fine)
            self._select_all()

    def key(self, key, fine):
        self.dirty = True
        if key in ("up", "down"):
            self.scroll(1 if key == "up" else -1, fine)
        elif key in ("enter", "escape"):
            self._text = None
            self._select_all()
            return key == "enter"
        elif key in ("left", "right", "home", "end"):
            self._move(key)
        elif key in ("backspace", "delete"):
            self._erase(key)
        elif len(key) == 1:
            self._insert(key)
        else:
            return False
        return True

    def _select_all(self):
        self._all_selected, self._caret, self.dirty = True, len(self.text), True

    def _move(self, key):
        last = len(self.text)
        places = {"left": max(0, self._caret - 1), "right": min(last, self._caret + 1), "home": 0, "end": last}
        self._caret = places[key]
        self._all_selected = False

    def _erase(self, key):
        first = self._caret - (key == "backspace")
        if self._all_selected:
            self._edit("", 0)
        elif 0 <= first < len(self.text):
            self._edit(self.text[:first] + self.text[first + 1 :], first)

    def _insert(self, character):
        text, caret = ("", 0) if self._all_selected else (self.text, self._caret)
        if len(text) < _LARGEST_TEXT:
            self._edit(text[:caret] + character + text[caret:], caret + 1)

    def _edit(self, text, caret):
        self._text, self._caret, self._all_selected = text, caret, False
        value = read_number(text)
        if value is not None:
            self._put(value)
