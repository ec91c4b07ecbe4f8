#!/usr/bin/env python3
"""Draws the tool bar's pictures and the program's icon, as files beside this script.

tools_NN.png  one strip of NN x NN pictures for each size, in the order of PICTURES
vantrel.ico   the program's icon

Every picture is drawn on a grid of 16 x 16 units. Straight edges are moved onto whole pixels, so that they are sharp in every size;
everything else is drawn smooth. A strip holds no colours of its own: opacity is the drawing, red says how much of the accent colour is
in it, and the editor puts the system's colours in.
"""
import math
import pathlib
import struct
import zlib

SIZES = (16, 20, 24, 32, 36, 48)
ICON_SIZES = (16, 24, 32, 48)
SAMPLES = 6


class Canvas:
    def __init__(self, size):
        self.size = size
        self.scale = size / 16
        self.stroke = max(1, round(self.scale))
        self.ink = [0.0] * (size * size)
        self.accent = [0.0] * (size * size)

    def snap(self, units):
        return round(units * self.scale)

    def paint(self, inside, accent=False, box=None):
        target, other = (self.accent, self.ink) if accent else (self.ink, self.accent)
        x0, y0, x1, y1 = box or (0, 0, self.size, self.size)
        for y in range(max(0, math.floor(y0)), min(self.size, math.ceil(y1))):
            for x in range(max(0, math.floor(x0)), min(self.size, math.ceil(x1))):
                hits = sum(
                    inside(x + (i + 0.5) / SAMPLES, y + (j + 0.5) / SAMPLES)
                    for i in range(SAMPLES)
                    for j in range(SAMPLES)
                )
                if hits:
                    cover = hits / SAMPLES**2
                    at = y * self.size + x
                    other[at] *= 1 - cover  # what is drawn later lies on top
                    target[at] = cover + target[at] * (1 - cover)

    def erase(self, x0, y0, x1, y1):
        x0, y0, x1, y1 = map(self.snap, (x0, y0, x1, y1))
        for y in range(y0, y1):
            for x in range(x0, x1):
                self.ink[y * self.size + x] = self.accent[y * self.size + x] = 0.0

    # --- on whole pixels ---
    def pixels(self, x0, y0, x1, y1, accent=False):
        self.paint(lambda x, y: x0 <= x < x1 and y0 <= y < y1, accent, (x0, y0, x1, y1))

    def fill(self, x0, y0, x1, y1, accent=False):
        x0, y0, x1, y1 = map(self.snap, (x0, y0, x1, y1))
        self.pixels(x0, y0, max(x1, x0 + 1), max(y1, y0 + 1), accent)

    def frame(self, x0, y0, x1, y1, accent=False):
        x0, y0, x1, y1 = map(self.snap, (x0, y0, x1, y1))
        s = self.stroke
        self.pixels(x0, y0, x1, y0 + s, accent)
        self.pixels(x0, y1 - s, x1, y1, accent)
        self.pixels(x0, y0, x0 + s, y1, accent)
        self.pixels(x1 - s, y0, x1, y1, accent)

    def across(self, x0, x1, y, accent=False):
        top = self.snap(y)
        self.pixels(self.snap(x0), top, self.snap(x1), top + self.stroke, accent)

    def down(self, x, y0, y1, accent=False):
        left = self.snap(x)
        self.pixels(left, self.snap(y0), left + self.stroke, self.snap(y1), accent)

    # --- smooth ---
    def polygon(self, points, accent=False):
        p = [(x * self.scale, y * self.scale) for x, y in points]

        def inside(x, y):
            odd = False
            for (ax, ay), (bx, by) in zip(p, p[1:] + p[:1]):
                if (ay > y) != (by > y) and x < (bx - ax) * (y - ay) / (by - ay) + ax:
                    odd = not odd
            return odd

        self.paint(inside, accent)

    def line(self, x0, y0, x1, y1, width=1.3, accent=False):
        s = self.scale
        ax, ay, bx, by, half = x0 * s, y0 * s, x1 * s, y1 * s, width * s / 2
        length2 = (bx - ax) ** 2 + (by - ay) ** 2

        def inside(x, y):
            t = max(0.0, min(1.0, ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / length2))
            return (x - ax - t * (bx - ax)) ** 2 + (y - ay - t * (by - ay)) ** 2 <= half * half

        self.paint(inside, accent)

    def arc(self, cx, cy, radius, start=0, end=360, width=1.4, accent=False):
        """Degrees, clockwise from the right."""
        s = self.scale

        def inside(x, y):
            dx, dy = x - cx * s, y - cy * s
            if abs(math.hypot(dx, dy) - radius * s) > width * s / 2:
                return False
            return (math.degrees(math.atan2(dy, dx)) - start) % 360 <= end - start

        self.paint(inside, accent)

    def dot(self, cx, cy, radius, accent=False):
        s = self.scale
        self.paint(lambda x, y: math.hypot(x - cx * s, y - cy * s) <= radius * s, accent)


def revert(c):
    c.frame(2, 1, 11, 15)
    for y in (4, 6):
        c.across(4, 9, y)
    c.erase(6, 8, 16, 16)
    c.arc(11, 11.5, 3.3, 200, 480, 1.5, True)
    c.polygon([(5.4, 9.6), (10.4, 9.0), (7.6, 13.2)], True)


def save(c):
    c.polygon([(1, 1), (13, 1), (15, 3), (15, 15), (1, 15)])
    c.erase(2, 2, 14, 14)
    c.fill(4, 2, 11, 6)
    c.erase(8, 3, 10, 5)
    c.fill(3, 8, 13, 14, True)


def print_(c):
    c.frame(4, 1, 12, 6)
    c.fill(1, 5, 15, 12)
    c.erase(2, 6, 14, 11)
    c.fill(12, 7, 13, 8, True)
    c.erase(4, 9, 12, 15)
    c.frame(4, 9, 12, 15)
    c.across(6, 10, 11, True)
    c.across(6, 10, 13, True)


def cut(c):
    c.line(4.5, 1, 9.4, 10.2, 1.5)
    c.line(11.5, 1, 6.6, 10.2, 1.5)
    c.arc(5, 12.3, 2.1, 0, 360, 1.4, True)
    c.arc(11, 12.3, 2.1, 0, 360, 1.4, True)


def copy(c):
    c.frame(1, 1, 10, 11)
    c.erase(5, 4, 15, 15)
    c.frame(6, 5, 15, 15, True)
    c.across(8, 13, 8, True)
    c.across(8, 13, 11, True)
    c.across(3, 8, 3)


def paste(c):
    c.fill(2, 2, 13, 15)
    c.erase(3, 3, 12, 14)
    c.fill(5, 1, 10, 4)
    c.erase(6, 6, 15, 15)
    c.frame(6, 6, 15, 15, True)
    c.across(8, 13, 9, True)
    c.across(8, 13, 12, True)


def undo(c):
    c.arc(8.5, 9.5, 4.7, 215, 420, 1.7, True)
    c.polygon([(1, 2.5), (1.6, 9), (7.8, 7.2)], True)


def redo(c):
    c.arc(7.5, 9.5, 4.7, 120, 325, 1.7, True)
    c.polygon([(15, 2.5), (14.4, 9), (8.2, 7.2)], True)


def find(c):
    c.line(10, 10, 14.4, 14.4, 2.2)
    c.arc(6.5, 6.5, 4.7, 0, 360, 1.6, True)


def minimize(c):
    c.frame(2, 2, 14, 14)
    c.fill(4, 10, 9, 12, True)


def restore(c):
    c.frame(5, 2, 14, 10)
    c.fill(5, 2, 14, 4)
    c.erase(2, 6, 11, 14)
    c.frame(2, 6, 11, 14, True)
    c.fill(2, 6, 11, 8, True)


def maximize(c):
    c.frame(2, 2, 14, 14)
    c.fill(2, 2, 14, 5, True)


def bars(c, lengths):
    for y, length in zip((2, 5, 8, 11), lengths):
        c.fill(1, y, 1 + length, y + 2)
    c.down(12, 2, 12, True)
    c.polygon([(9.5, 10.5), (15.5, 10.5), (12.5, 14.5)], True)


def ascending(c):
    bars(c, (2, 4, 6, 8))


def descending(c):
    bars(c, (8, 6, 4, 2))


def ravel(c):
    for x in (5, 8):
        for y in (1, 4):
            c.fill(x, y, x + 2, y + 2)
    c.polygon([(5, 8), (10.5, 8), (7.75, 11)], True)
    for x in (2, 5, 8, 11):
        c.fill(x, 12, x + 2, 14)


def enclose(c):
    c.frame(1, 1, 15, 15, True)
    c.frame(5, 5, 11, 11)


def disclose(c):
    for x0, x1 in ((1, 5), (11, 15)):
        c.across(x0, x1, 1, True)
        c.across(x0, x1, 14, True)
    for y0, y1 in ((1, 5), (11, 15)):
        c.down(1, y0, y1, True)
        c.down(14, y0, y1, True)
    c.frame(5, 5, 11, 11)


def reverse_last(c):
    c.arc(8, 8, 4.8, 0, 360, 1.4)
    c.line(8, 1, 8, 15, 1.5, True)


def reverse_first(c):
    c.arc(8, 8, 4.8, 0, 360, 1.4)
    c.line(1, 8, 15, 8, 1.5, True)


def transpose(c):
    c.arc(8, 8, 4.8, 0, 360, 1.4)
    c.line(2.4, 2.4, 13.6, 13.6, 1.5, True)


def reorder_axes(c):
    c.down(3, 3, 13)
    c.across(3, 13, 12)
    c.line(3.5, 12.5, 9, 7, 1.3)
    c.polygon([(3.5, 0.5), (1.2, 4), (5.8, 4)], True)
    c.polygon([(15.5, 12.5), (12, 10.2), (12, 14.8)], True)
    c.polygon([(11, 5), (10.4, 8.6), (7.4, 5.6)], True)


def rows_of_matrix(c):
    c.frame(1, 2, 15, 14)
    c.across(1, 15, 6, True)
    c.across(1, 15, 9, True)


def array_of_rows(c):
    for y in (1, 6, 11):
        c.frame(1, y, 15, y + 4, True)
        c.fill(4, y + 2, 6, y + 3)
        c.fill(7, y + 2, 9, y + 3)
        c.fill(10, y + 2, 12, y + 3)


def plus(c, x, y):
    """Centred on a unit's corner."""
    s = c.stroke
    cx, cy, arm = c.snap(x), c.snap(y), c.snap(2.6)
    low = s // 2
    c.pixels(cx - arm, cy - low, cx + arm + s - 2 * low, cy - low + s, True)
    c.pixels(cx - low, cy - arm, cx - low + s, cy + arm + s - 2 * low, True)


def item_left(c):
    c.frame(8, 4, 15, 11)
    plus(c, 4, 7.5)


def item_right(c):
    c.frame(1, 4, 8, 11)
    plus(c, 12, 7.5)


def column_left(c):
    c.frame(9, 1, 14, 15)
    c.across(9, 14, 5)
    c.across(9, 14, 10)
    plus(c, 4, 8)


def column_right(c):
    c.frame(2, 1, 7, 15)
    c.across(2, 7, 5)
    c.across(2, 7, 10)
    plus(c, 12, 8)


def row_above(c):
    c.frame(1, 9, 15, 14)
    c.down(5, 9, 14)
    c.down(10, 9, 14)
    plus(c, 8, 4)


def row_below(c):
    c.frame(1, 2, 15, 7)
    c.down(5, 2, 7)
    c.down(10, 2, 7)
    plus(c, 8, 12)


def help_(c):
    c.arc(8, 8, 6.6, 0, 360, 1.3)
    c.arc(8, 6.4, 2.2, 180, 410, 1.5, True)
    c.line(8, 9.6, 9.2, 8.2, 1.5, True)
    c.line(8, 9.4, 8, 9.9, 1.5, True)
    c.dot(8, 12, 0.95, True)


PICTURES = (
    revert, save, print_, cut, copy, paste, undo, redo, find, minimize, restore, maximize, ascending, descending, ravel,
    enclose, disclose, reverse_last, reverse_first, transpose, reorder_axes, rows_of_matrix, array_of_rows,
    item_left, item_right, column_left, column_right, row_above, row_below, help_,
)  # fmt: skip


def chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


def write_png(path, width, height, pixel):
    """pixel(x, y) is (red, green, blue, opacity)."""
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    path.write_bytes(
        b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")
    )


def draw(picture, size):
    canvas = Canvas(size)
    picture(canvas)
    return canvas


def write_strip(path, size):
    canvases = [draw(picture, size) for picture in PICTURES]

    def pixel(x, y):
        canvas = canvases[x // size]
        at = y * size + x % size
        opacity = min(1.0, canvas.ink[at] + canvas.accent[at])
        share = canvas.accent[at] / opacity if opacity else 0
        return round(255 * share), 0, 0, round(255 * opacity)

    write_png(path, size * len(canvases), size, pixel)


def program(c):
    """A box within a box, and an item beside it."""
    c.fill(0, 1, 16, 15)
    c.fill(1, 2, 15, 14, True)
    c.frame(2, 3, 14, 13)
    c.frame(3, 5, 9, 11)
    c.fill(5, 7, 7, 9)
    c.frame(10, 5, 13, 11)


INK, PAPER = (24, 48, 96), (232, 240, 252)


def icon_image(size):
    canvas = draw(program, size)
    rows = bytearray()
    mask = bytearray()
    for y in reversed(range(size)):
        bits = 0
        for x in range(size):
            at = y * size + x
            opacity = min(1.0, canvas.ink[at] + canvas.accent[at])
            share = canvas.accent[at] / opacity if opacity else 0
            color = [round(i + (p - i) * share) for i, p in zip(INK, PAPER)]
            rows += bytes((color[2], color[1], color[0], round(255 * opacity)))
            bits = bits << 1 | (opacity == 0)
        width = (size + 31) // 32 * 32
        mask += (bits << (width - size)).to_bytes(width // 8, "big")
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(rows) + len(mask), 0, 0, 0, 0)
    return header + bytes(rows) + bytes(mask)


def write_icon(path):
    images = [icon_image(size) for size in ICON_SIZES]
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, image in zip(ICON_SIZES, images):
        directory += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    path.write_bytes(directory + b"".join(images))


if __name__ == "__main__":
    here = pathlib.Path(__file__).resolve().parent
    for one in SIZES:
        write_strip(here / f"tools_{one}.png", one)
    write_icon(here / "vantrel.ico")
