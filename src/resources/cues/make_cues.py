#!/usr/bin/env python3
"""Draws the cues for hidden text, as PNG files beside this script.

cue_arrow.png  a small arrow that points left
cue_edge.png   a darkening that is strongest at the left

The editor turns them for the other sides and makes them as translucent as the user wants.
"""
import pathlib
import struct
import zlib

COLOR = (32, 48, 112)
ARROW_WIDTH, ARROW_HEIGHT = 7, 13
EDGE_WIDTH = 10


def chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


def write_png(path, width, height, alpha):
    """alpha(x, y) is the opacity of a pixel, 0 to 255."""
    rows = b"".join(
        b"\0" + b"".join(bytes((*COLOR, alpha(x, y))) for x in range(width)) for y in range(height)
    )
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    path.write_bytes(
        b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")
    )


def arrow(x, y):
    half = ARROW_HEIGHT // 2
    return 255 if abs(y - half) <= x else 0


def edge(x, _):
    return 255 * (EDGE_WIDTH - x) // EDGE_WIDTH


if __name__ == "__main__":
    here = pathlib.Path(__file__).resolve().parent
    write_png(here / "cue_arrow.png", ARROW_WIDTH, ARROW_HEIGHT, arrow)
    write_png(here / "cue_edge.png", EDGE_WIDTH, 1, edge)
