"""Controls of the panel: they draw themselves with a Pen and answer mouse and keys."""

from .pen import ACCENT, EDGE, FACE, FAINT, INK, ON_FACE, PAPER, Box


class Widget:
    """A rectangle of the window. `dirty` asks for it to be drawn again; it paints all of its box."""

    takes_focus = False
    subject = None  #: the parameter that it shows; "wave" for the picture

    def __init__(self, box, hint=""):
        self.box, self._hint = box, hint
        self.dirty, self.has_focus = True, False

    def hint(self):
        """What the status line says while the mouse is over it."""
        return self._hint

    def draw(self, pen):
        raise NotImplementedError

    def press(self, x, y, fine):
        """The mouse button went down on it."""

    def drag(self, x, y, fine):
        """The mouse moved while the button is held."""

    def release(self):
        """The button was released, wherever the mouse is."""

    def scroll(self, notches, fine):
        """The wheel turned over it; up is positive."""

    def key(self, key, fine):
        """A key while it has the focus. True if it was for this widget. `key` has no "shift+"."""
        return False

    def focus(self, is_on):
        self.has_focus, self.dirty = is_on, True


class Label(Widget):
    def __init__(self, box, text, hint="", size=9, colour=INK, across="left"):
        super().__init__(box, hint)
        self.text, self._size, self._colour, self._across = text, size, colour, across

    def draw(self, pen):
        pen.rectangle(self.box, FACE)
        x = {"left": self.box.x, "center": self.box.middle[0], "right": self.box.right}[self._across]
        pen.text(x, self.box.middle[1], self.text, self._size, self._colour, self._across, clip=self.box)


class Status(Label):
    """A line of text that changes."""

    def show(self, text, colour=INK):
        if (text, colour) != (self.text, self._colour):
            self.text, self._colour, self.dirty = text, colour, True


class Button(Widget):
    """Does something when it is pressed; looks pressed while `is_on()`."""

    takes_focus = True

    def __init__(self, box, text, action, hint="", is_on=lambda: False, is_enabled=lambda: True):
        super().__init__(box, hint)
        self._text, self._action, self._is_on, self._is_enabled = text, action, is_on, is_enabled
        self._is_down = False

    def draw(self, pen):
        pen.rectangle(self.box, FACE)
        is_on = self._is_down or self._is_on()
        edge, width = ACCENT if self.has_focus or is_on else EDGE, 1.2 if self.has_focus else 0.7
        pen.rectangle(self.box.inside(1.5 * pen.point), ON_FACE if is_on else PAPER, edge, width)
        colour = INK if self._is_enabled() else EDGE
        pen.text(*self.box.middle, self._text, 8.5, colour, "center", clip=self.box)

    def press(self, x, y, fine):
        self._is_down = self.dirty = True
        if self._is_enabled():
            self._action()

    def release(self):
        self._is_down, self.dirty = False, True

    def key(self, key, fine):
        if key in (" ", "enter") and self._is_enabled():
            self._action()
        return key in (" ", "enter")


class HoldButton(Button):
    """Calls its action with True when it is pressed and False when it is released."""

    def press(self, x, y, fine):
        self._is_down = self.dirty = True
        self._action(True)

    def release(self):
        super().release()
        self._action(False)

    def key(self, key, fine):
        return False


class Arrows(Widget):
    """Up and down; each click is a step of a field."""

    def __init__(self, box, step, hint="Click: a step. Shift: a tenth of it"):
        super().__init__(box, hint)
        self._step = step

    def draw(self, pen):
        pen.rectangle(self.box, FACE)
        x, y = self.box.middle
        half = self.box.height / 2
        for sign in (1, -1):
            part = Box(self.box.x, y if sign > 0 else self.box.y, self.box.width, half).inside(pen.point)
            pen.rectangle(part, PAPER, EDGE, 0.7)
            size, centre = half * 0.2, y + sign * half / 2
            base, tip = centre - sign * size, centre + sign * size
            pen.polygon([(x - 1.5 * size, base), (x + 1.5 * size, base), (x, tip)], FAINT)

    def press(self, x, y, fine):
        self._step(1 if y >= self.box.middle[1] else -1, fine)

    def scroll(self, notches, fine):
        self._step(notches, fine)
