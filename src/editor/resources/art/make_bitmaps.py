#!/usr/bin/env python3
"""Makes the bitmaps of their pictures in letters.

Needs only Python's standard library:  python3 make_bitmaps.py
Reads palette.txt and the pictures beside it; writes bitmaps of their names one folder up, all images of
a file side by side, 24 bits a pixel.
"""

import pathlib
import struct

HERE = pathlib.Path(__file__).parent


def lines(name):
    return [line for line in (HERE / name).read_text().splitlines() if not line.startswith("#")]


def read_images(name, size, count):
    images = []
    rest = lines(name)
    while rest:
        number, title = rest[0].split(" ", 1)
        rows = rest[1 : 1 + size]
        assert int(number) == len(images), f"{name}: image {title} is out of order"
        assert len(rows) == size, f"{name}: {title} has {len(rows)} rows"
        for row in rows:
            assert len(row) == size, f"{name}: {title}: '{row}' has {len(row)} columns"
        images.append(rows)
        rest = rest[1 + size :]
    assert len(images) == count, f"{name}: {len(images)} images"
    return images


def write_bitmap(path, images, size, palette):
    width = size * len(images)
    pad = b"\0" * (-3 * width % 4)
    pixels = b""
    for y in reversed(range(size)):
        row = b"".join(
            struct.pack("BBB", *reversed(palette[letter])) for image in images for letter in image[y]
        )
        pixels += row + pad
    header = struct.pack("<IiiHHIIiiII", 40, width, size, 1, 24, 0, len(pixels), 0, 0, 0, 0)
    path.write_bytes(struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54) + header + pixels)


def main():
    palette = {}
    for line in lines("palette.txt"):
        letter, *channels = line.split()
        palette[letter] = tuple(map(int, channels))
    bitmaps = [("toolbar", 16, 18), ("toolbox", 22, 6), ("mesh0", 8, 1)]
    bitmaps += [(f"marquee{step}", 8, 1) for step in range(4)]
    for name, size, count in bitmaps:
        images = read_images(f"{name}.txt", size, count)
        write_bitmap(HERE.parent / f"{name}.bmp", images, size, palette)


if __name__ == "__main__":
    main()
