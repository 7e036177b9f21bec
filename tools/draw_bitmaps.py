#!/usr/bin/env python3
"""Draws the 16 x 16 bitmaps of the control panel: the rings of a contrast transfer function, round and astigmatic.

    tools/draw_bitmaps.py      writes src/resources/pctf.bmp and src/resources/ring.bmp
"""
import math
import pathlib
import struct

SIZE = 16


def transfer(x, y, stretch):
    """Grey level of the squared sine that defocus makes, cut off by an aperture."""
    x, y = (x - SIZE / 2 + 0.5) * stretch, (y - SIZE / 2 + 0.5) / stretch
    r2 = x * x + y * y
    return round(30 + 210 * math.sin(math.pi * r2 / 34) ** 2) if r2 < 62 else 192


def bitmap(stretch):
    palette = b"".join(struct.pack("BBBB", g, g, g, 0) for g in range(256))
    pixels = bytes(transfer(x, y, stretch) for y in reversed(range(SIZE)) for x in range(SIZE))
    info = struct.pack("<IiiHHIIiiII", 40, SIZE, SIZE, 1, 8, 0, len(pixels), 2835, 2835, 256, 0)
    offset = 14 + len(info) + len(palette)
    return struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset) + info + palette + pixels


folder = pathlib.Path(__file__).resolve().parent.parent / "src" / "resources"
for name, stretch in (("pctf.bmp", 1.0), ("ring.bmp", 1.15)):
    (folder / name).write_bytes(bitmap(stretch))
