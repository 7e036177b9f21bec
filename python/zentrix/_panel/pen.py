"""Drawing in pixels, origin at the lower left, on the renderer of a matplotlib canvas."""

from typing import NamedTuple

import numpy as np
from matplotlib.colors import to_rgba
from matplotlib.font_manager import FontProperties
from matplotlib.path import Path
from matplotlib.text import Text
from matplotlib.transforms import Affine2D, Bbox, IdentityTransform

INK, PAPER, FACE, EDGE, FAINT = "#202020", "#ffffff", "#f1f1f1", "#a0a0a0", "#6a6a6a"
ACCENT, WRONG, WRONG_FACE, ON_FACE = "#1a6fc4", "#c62828", "#fde3e3", "#cfe2f7"
_MOST_TEXTS = 500  # kept


class Box(NamedTuple):
    """A rectangle in pixels."""

    x: float
    y: float
    width: float
    height: float

    @property
    def middle(self):
        return self.x + self.width / 2, self.y + self.height / 2

    @property
    def top(self):
        return self.y + self.height

    @property
    def right(self):
        return self.x + self.width

    def holds(self, x, y):
        return self.x <= x < self.right and self.y <= y < self.top

    def inside(self, margin):
        return Box(self.x + margin, self.y + margin, self.width - 2 * margin, self.height - 2 * margin)

    def bbox(self):
        return Bbox.from_bounds(self.x, self.y, self.width, self.height)


def union(boxes):
    return Bbox.union([box.bbox() for box in boxes])


class Pen:
    """Keeps the texts that it has drawn, whose layout takes longer than drawing them again."""

    def __init__(self, figure, renderer):
        self.figure, self.renderer = figure, renderer
        self._texts, self._widths = {}, {}

    def forget(self):
        """Texts of another resolution or page."""
        self._texts.clear()
        self._widths.clear()

    @property
    def point(self):
        """Pixels of 1/72 inch."""
        return self.figure.dpi / 72

    def rectangle(self, box, face, edge=None, width=0.8):
        corners = Path.unit_rectangle().transformed(Affine2D().scale(box.width, box.height).translate(box.x, box.y))
        self._path(corners, face, edge, width, snap=True)

    def circle(self, centre, radius, face, edge=None, width=0.8):
        self._path(Path.circle(centre, radius), face, edge, width)

    def polygon(self, points, face):
        self._path(Path([*points, points[0]], closed=True), face)

    def line(self, points, colour, width=1.0):
        """A line through points (n, 2); it has a gap where they are not a number."""
        points = np.asarray(points, float)
        codes = np.full(len(points), Path.LINETO, np.uint8)
        good = np.isfinite(points).all(axis=1)
        codes[np.r_[True, ~good[:-1]]] = Path.MOVETO
        if good.any():
            self._path(Path(points[good], codes[good]), None, colour, width)

    def image(self, x, y, rgba):
        """An RGBA picture, row 0 on top, its lower left corner at a whole pixel."""
        self.renderer.draw_image(self.renderer.new_gc(), round(x), round(y), rgba[::-1])

    def text(self, x, y, string, size=9, colour=INK, across="left", up="center_baseline", clip=None):
        key = (string, size, colour, across, up)
        if key not in self._texts:
            _make_room(self._texts)
            text = Text(0, 0, string, fontsize=size, color=colour, ha=across, va=up, parse_math=False)
            text.set_figure(self.figure)
            text.set_transform(IdentityTransform())
            self._texts[key] = text
        text = self._texts[key]
        text.set_position((x, y))
        text.set_clip_on(clip is not None)
        text.set_clip_box(clip.bbox() if clip is not None else None)
        text.draw(self.renderer)

    def text_width(self, string, size=9):
        key = (string, size)
        if key not in self._widths:
            _make_room(self._widths)
            font = FontProperties(size=size)
            self._widths[key] = self.renderer.get_text_width_height_descent(string, font, ismath=False)[0]
        return self._widths[key]

    def _path(self, path, face, edge=None, width=0.8, snap=False):
        gc = self.renderer.new_gc()
        gc.set_linewidth(width * self.point if edge else 0)
        if edge:
            gc.set_foreground(edge)
        gc.set_snap(snap)
        self.renderer.draw_path(gc, path, IdentityTransform(), None if face is None else to_rgba(face))


def _make_room(cache):
    if len(cache) >= _MOST_TEXTS:
        cache.clear()
