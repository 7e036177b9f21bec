#!/usr/bin/env python3
"""Draws the icon of the panel program: the rings of a contrast transfer function with a little astigmatism.

    tools/draw_icon.py      writes host/windows/zentrix.ico, in five sizes
"""
import math
import pathlib
import struct
import zlib

SIZES = 16, 24, 32, 48, 256
RINGS = 3
DARK, BRIGHT = (18, 32, 74), (126, 214, 255)  # red, green, blue
SAMPLES = 4  # in each direction, for smooth edges


def value(x, y):
    """Brightness and opacity at a place of the unit square's inner circle."""
    u, v = (x + y) * math.sqrt(0.5), (x - y) * math.sqrt(0.5)
    r2 = (u * 1.06) ** 2 + (v / 1.06) ** 2
    return math.sin(math.pi * RINGS * r2) ** 2, float(math.hypot(x, y) < 1)


def pixel(column, row, size):
    light = cover = 0.0
    for i in range(SAMPLES * SAMPLES):
        x = (column + (i % SAMPLES + 0.5) / SAMPLES) / size * 2 - 1
        y = (row + (i // SAMPLES + 0.5) / SAMPLES) / size * 2 - 1
        brightness, opacity = value(x, y)
        light += brightness * opacity
        cover += opacity
    mean = light / cover if cover else 0
    colour = [round(dark + (bright - dark) * mean) for dark, bright in zip(DARK, BRIGHT)]
    return (*colour, round(255 * cover / SAMPLES**2))


def png(size):
    rows = b"".join(b"\0" + bytes(c for x in range(size) for c in pixel(x, y, size)) for y in range(size))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")


def bitmap(size):
    info = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    colours = bytearray()
    for y in reversed(range(size)):
        for x in range(size):
            red, green, blue, alpha = pixel(x, y, size)
            colours += bytes((blue, green, red, alpha))
    mask = bytes((size + 31) // 32 * 4 * size)  # not used with an alpha channel
    return info + bytes(colours) + mask


pictures = [png(size) if size == 256 else bitmap(size) for size in SIZES]
place = 6 + 16 * len(SIZES)
icon = struct.pack("<HHH", 0, 1, len(SIZES))
for size, data in zip(SIZES, pictures):
    icon += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), place)
    place += len(data)
target = pathlib.Path(__file__).resolve().parent.parent / "host" / "windows" / "zentrix.ico"
target.write_bytes(icon + b"".join(pictures))
