"""A round knob for an angle, with a field in its centre."""

import math

from .field import Field
from .number_text import angle_of
from .pen import ACCENT, EDGE, FACE, PAPER, Box
from .widgets import Widget

_KEYS = {"up": 1, "right": 1, "down": -1, "left": -1, "pageup": 10, "pagedown": -10}
_FINE = 0.1  # of a drag, and of a key


class Knob(Widget):
    """Turns counter-clockwise with growing angle, 0 to the right, as angles on the picture.

    get(), put(degrees)     the angle
    step(notches, fine)     moves it by the wheel
    """

    takes_focus = True

    def __init__(self, box, get, put, step, hint):
        super().__init__(box)
        self._get, self._put, self._step, self._hint = get, put, step, hint
        self._grip = None  # angles of mouse and knob when the fine drag began
        self._in_field = False
        self.field = Field(box, get, put, step, hint, suffix="°")

    def hint(self):
        return self._hint()

    @property
    def radius(self):
        return min(self.box.width, self.box.height) / 2 * 0.86

    def draw(self, pen):
        pen.rectangle(self.box, FACE)
        centre, radius = self.box.middle, self.radius
        edge = ACCENT if self.has_focus and not self._in_field else EDGE
        pen.circle(centre, radius, PAPER, edge, 1.6 if self.has_focus and not self._in_field else 1.1)
        for quarter in range(4):
            angle = quarter * math.pi / 2
            pen.line([_point(centre, share * radius, angle) for share in (0.88, 0.98)], EDGE, 0.8)
        angle = math.radians(self._get())
        pen.line([_point(centre, share * radius, angle) for share in (0.72, 1.0)], ACCENT, 2.0)
        pen.circle(_point(centre, radius, angle), 0.115 * radius + 2, ACCENT, PAPER, 0.8)
        half_width, half_height = 0.66 * radius, 0.32 * radius
        box = Box(centre[0] - half_width, centre[1] - half_height, 2 * half_width, 2 * half_height)
        self.field.draw_inside(pen, box, "center", framed=False)

    def focus(self, is_on):
        super().focus(is_on)
        if self._in_field:
            self.field.focus(False)
            self._in_field = False

    def press(self, x, y, fine):
        dx, dy = self._offset(x, y)
        if math.hypot(dx, dy) < 0.6 * self.radius:
            if self._in_field:
                self.field.press(x, y, fine)
            else:
                self._enter_field()
            self._grip = None
            return
        self._leave_field()
        self._grip = (angle_of(dx, dy), self._get())
        if not fine:
            self._put(float(round(angle_of(dx, dy)) % 360))

    def drag(self, x, y, fine):
        if self._grip is None:
            return
        mouse = angle_of(*self._offset(x, y))
        if fine:
            turned = (mouse - self._grip[0] + 180) % 360 - 180
            angle = self._grip[1] + _FINE * turned
            self._put(round(angle, 1))
        else:
            angle = float(round(mouse) % 360)
            self._put(angle)
        self._grip = (mouse, angle)

    def release(self):
        self._grip = None

    def scroll(self, notches, fine):
        self._leave_field()
        self._step(notches, fine)

    def key(self, key, fine):
        self.dirty = True
        if self._in_field:
            if key == "escape":
                self._leave_field()
                return True
            return self.field.key(key, fine)
        if key in _KEYS:
            self._put(self._get() + _KEYS[key] * (_FINE if fine else 1))
            return True
        if len(key) == 1 and (key.isdigit() or key in "-+.,"):
            self._enter_field()
            return self.field.key(key, fine)
        return False

    def _enter_field(self):
        self._in_field = self.dirty = True
        self.field.focus(True)

    def _leave_field(self):
        if self._in_field:
            self.field.focus(False)
            self._in_field, self.dirty = False, True

    def _offset(self, x, y):
        centre = self.box.middle
        return x - centre[0], y - centre[1]


def _point(centre, radius, angle):
    return centre[0] + radius * math.cos(angle), centre[1] + radius * math.sin(angle)
