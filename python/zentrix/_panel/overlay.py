"""The transfer function and its radial profile, in a corner of the picture."""

import numpy as np

from .contrast_transfer import Transfer
from .number_text import round_length
from .pen import Box
from .shades import transfer_picture

_BACK, _TEXT, _CURVE, _ENVELOPE = "#10131f", "#e6e6e6", "#ffd24a", "#7fb4ff"


class Overlay:
    """Follows the model's parameters; keeps its last picture."""

    def __init__(self, model):
        self._model = model
        self._of = self._transfer = self._picture = None

    def draw(self, pen, corner, side):
        """corner   upper right one of the overlay; side  of the square [pixels]"""
        self._follow()
        side = int(side)
        rows = np.arange(side) * len(self._picture) // side
        left, bottom = corner[0] - side, corner[1] - side
        pen.rectangle(Box(left - 2, bottom - 2, side + 4, side + 4), _BACK)
        pen.image(left, bottom, np.ascontiguousarray(self._picture[rows][:, rows]))
        caption = 13 * pen.point
        room = Box(left - 2, bottom - caption, side + 4, caption)
        pen.rectangle(room, _BACK)
        pen.text(left + 3, bottom - caption / 2, "sin χ; blue: undersampled", 7.5, _TEXT, clip=room)
        self._draw_profile(pen, Box(left - 2, bottom - caption - 0.55 * side, side + 4, 0.55 * side))

    def _draw_profile(self, pen, box):
        pen.rectangle(box, _BACK)
        transfer, unit = self._transfer, pen.point
        plot = Box(box.x + 3 * unit, box.y + 12 * unit, box.width - 6 * unit, box.height - 14 * unit)

        def points(values):
            x = plot.x + transfer.frequency / transfer.limit * plot.width
            return np.column_stack([x, plot.middle[1] + values * plot.height / 2])

        pen.line([(plot.x, plot.middle[1]), (plot.right, plot.middle[1])], "#5a6070", 0.7)
        for sign in (1, -1):
            pen.line(points(sign * transfer.envelope), _ENVELOPE, 0.9)
        pen.line(points(transfer.profile), _CURVE, 1.1)
        step = round_length(transfer.limit / 2)
        for count in range(1, int(transfer.limit / step + 1e-9) + 1):
            x = plot.x + count * step / transfer.limit * plot.width
            pen.line([(x, plot.y), (x, plot.y + 3 * unit)], _TEXT, 0.8)
            text = f"{count * step:g}"
            if x + pen.text_width(text, 7.5) / 2 < plot.right - pen.text_width(" 1/nm ", 7.5):
                pen.text(x, box.y + 6 * unit, text, 7.5, _TEXT, "center")
        pen.text(plot.right, box.y + 6 * unit, "1/nm", 7.5, _TEXT, "right")

    def _follow(self):
        optics = self._model.optics
        if self._of == optics:
            return
        self._transfer = Transfer(optics)
        self._picture = transfer_picture(self._transfer.square)
        self._of = optics
