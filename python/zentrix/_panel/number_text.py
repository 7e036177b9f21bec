"""Numbers as the panel reads and writes them, and lengths of scale bars."""

import math
import re

_NUMBER = re.compile(r"[+-]?(\d+([.,]\d*)?|[.,]\d+)([eE][+-]?\d+)?")


def read_number(text):
    """The number that the whole text is, with a decimal point or comma; None for every other text."""
    text = text.strip()
    if not _NUMBER.fullmatch(text):
        return None
    value = float(text.replace(",", "."))
    return value if math.isfinite(value) else None


def number_text(value):
    """At most nine digits, without the rounding noise of added steps; reads back as `tidy(value)`."""
    return f"{value + 0.0:.9g}"


def tidy(value):
    """The number of at most nine digits next to a value: 0.1 + 0.2 gives 0.3."""
    return float(f"{value:.9g}") + 0.0


def wrapped(degrees):
    """The same angle in [0, 360), in thousandths of a degree."""
    return round(degrees % 360, 3) % 360 + 0.0


def angle_of(dx, dy):
    """Angle [degrees] of a point relative to the centre of a knob; counter-clockwise from the right, y up."""
    return wrapped(math.degrees(math.atan2(dy, dx)))


def round_length(most):
    """The largest 1, 2 or 5 times a power of ten that is not above `most`."""
    power = 10.0 ** math.floor(math.log10(most))
    for factor in (5, 2, 1):
        if factor * power <= most * (1 + 1e-9):
            return factor * power
    return power


def length_text(nanometres):
    for unit, size in (("mm", 1e6), ("µm", 1e3), ("nm", 1), ("pm", 1e-3)):
        if nanometres >= size * (1 - 1e-9):
            break
    return f"{nanometres / size:.6g} {unit}"
