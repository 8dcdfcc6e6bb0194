#!/usr/bin/env python3
"""Draws the icons, at 16, 32, 48 and 256 pixels: facetor.ico, a cut gem of flat-shaded facets;
model.ico, a sheet of paper with the gem; texture_list.ico, a sheet with swatches.

Needs only Python's standard library:  python3 make_icon.py facetor.ico model.ico texture_list.ico
The small sizes are stored as 32-bit bitmaps, which every Windows reads, the large one as PNG.
"""

import os
import struct
import sys
import zlib

# The gem in a square of 256 units, seen from the side: table edge, girdle, point.
TABLE = [(72, 40), (128, 40), (184, 40)]
GIRDLE = [(14, 102), (84, 110), (172, 110), (242, 102)]
POINT = (128, 234)

FACETS = [  # corners, colour
    ([TABLE[0], GIRDLE[0], GIRDLE[1]], (255, 196, 64)),
    ([TABLE[0], TABLE[1], GIRDLE[1]], (255, 226, 128)),
    ([TABLE[1], GIRDLE[1], GIRDLE[2]], (255, 246, 214)),
    ([TABLE[1], TABLE[2], GIRDLE[2]], (126, 226, 244)),
    ([TABLE[2], GIRDLE[2], GIRDLE[3]], (52, 176, 226)),
    ([GIRDLE[0], GIRDLE[1], POINT], (232, 110, 44)),
    ([GIRDLE[1], GIRDLE[2], POINT], (206, 62, 92)),
    ([GIRDLE[2], GIRDLE[3], POINT], (38, 84, 178)),
]
OUTLINE = [TABLE[0], TABLE[2], GIRDLE[3], POINT, GIRDLE[0]]
EDGE = (24, 28, 58)

# A document's sheet in the same square: left, top, right, bottom, and how much is folded down of its
# upper right corner.
SHEET = (38, 8, 218, 248)
FOLD = 60
PAPER = (252, 253, 255)
PAPER_BACK = (214, 221, 234)
PAPER_EDGE = (74, 84, 118)
SWATCHES = [[(255, 196, 64), (232, 110, 44)], [(52, 176, 226), (206, 62, 92)]]


def inside(x, y, corners):
    """Even-odd test."""
    result = False
    for (x0, y0), (x1, y1) in zip(corners, corners[1:] + corners[:1]):
        if (y0 > y) != (y1 > y) and x < (x1 - x0) * (y - y0) / (y1 - y0) + x0:
            result = not result
    return result


def distance_to_edges(x, y, corners):
    best = 1e9
    for (x0, y0), (x1, y1) in zip(corners, corners[1:] + corners[:1]):
        dx, dy = x1 - x0, y1 - y0
        t = max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy)))
        best = min(best, ((x - x0 - t * dx) ** 2 + (y - y0 - t * dy) ** 2) ** 0.5)
    return best


# Each of these three gives the colour of a point, or None where the icon is transparent. A unit is
# the width of a pixel, in parts of the square.

def gem_at(x, y, unit, scale=1):
    rim = max(6, 0.6 * unit / scale)  # half the outline's width, which stays visible at 16 pixels
    seam = 1.6 if unit / scale < 7 else 0
    if distance_to_edges(x, y, OUTLINE) <= rim:
        return EDGE
    for corners, colour in FACETS:
        if inside(x, y, corners):
            if seam and distance_to_edges(x, y, corners) <= seam:
                return tuple((3 * c + e) // 4 for c, e in zip(colour, EDGE))
            return colour
    return None


def snapped(value, unit):
    """The middle of the pixel, so that a line of its width is not blurred."""
    return (value // unit + 0.5) * unit


def sheet_at(x, y, unit):
    half = max(0.5 * unit, 4)
    left, top, right, bottom = (snapped(edge, unit) for edge in SHEET)
    fold_x, fold_y = snapped(right - FOLD, unit), snapped(top + FOLD, unit)
    sheet = [(left, top), (fold_x, top), (right, fold_y), (right, bottom), (left, bottom)]
    flap = [(fold_x, top), (fold_x, fold_y), (right, fold_y)]
    if min(distance_to_edges(x, y, sheet), distance_to_edges(x, y, flap)) <= half:
        return PAPER_EDGE
    if inside(x, y, flap):
        return PAPER_BACK
    return PAPER if inside(x, y, sheet) else None


def model_at(x, y, unit):
    scale = 0.6 if unit < 12 else 0.55
    return (gem_at((x - 128) / scale + 128, (y - 160) / scale + 137, 0.8 * unit, scale) or
            sheet_at(x, y, unit))


def texture_list_at(x, y, unit):
    coarse = unit > 12  # no room for lines between the swatches
    size = 128 // unit * unit  # of all four: whole pixels
    left, top = ((middle - size / 2 + unit / 2) // unit * unit for middle in (128, 160))
    across, down = x - left, y - top
    if not (0 <= across < size and 0 <= down < size):
        return sheet_at(x, y, unit)
    line = 0 if coarse else max(unit, 6)
    inner = (size - line) / 2 // unit * unit  # where the middle line begins
    if any(v < line or v >= size - line or inner <= v < inner + line for v in (across, down)):
        return EDGE
    return SWATCHES[down >= inner][across >= inner]


ICONS = {"facetor.ico": gem_at, "model.ico": model_at, "texture_list.ico": texture_list_at}


def render(size, colour_at=gem_at):
    """Rows of (red, green, blue, alpha), top row first, each pixel averaged over 4 x 4 points."""
    steps = 4
    unit = 256 / size
    rows = []
    for y in range(size):
        row = []
        for x in range(size):
            total, hits = [0, 0, 0], 0
            for sub in range(steps * steps):
                point = colour_at((x + (sub % steps + 0.5) / steps) * unit,
                                  (y + (sub // steps + 0.5) / steps) * unit, unit)
                if point:
                    hits += 1
                    total = [t + c for t, c in zip(total, point)]
            if hits:
                row.append(tuple(t // hits for t in total) + (255 * hits // (steps * steps),))
            else:
                row.append((0, 0, 0, 0))
        rows.append(row)
    return rows


def as_bitmap(rows):
    size = len(rows)
    pixels = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask_row = (size + 31) // 32 * 4
    mask = bytearray()
    for row in reversed(rows):
        bits = bytearray(mask_row)
        for x, (_, _, _, a) in enumerate(row):
            if a < 128:
                bits[x // 8] |= 0x80 >> x % 8
        mask += bits
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(pixels) + len(mask),
                         0, 0, 0, 0)
    return header + pixels + bytes(mask)


def as_png(rows):
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data)))

    raw = b"".join(b"\0" + b"".join(bytes(pixel) for pixel in row) for row in rows)
    size = len(rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def icon(colour_at):
    images = []
    for size in (16, 32, 48, 256):
        rows = render(size, colour_at)
        images.append((size, as_png(rows) if size == 256 else as_bitmap(rows)))
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, data in images:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return directory + b"".join(data for _, data in images)


def main():
    for path in sys.argv[1:]:
        with open(path, "wb") as out:
            out.write(icon(ICONS[os.path.basename(path)]))


if __name__ == "__main__":
    main()
