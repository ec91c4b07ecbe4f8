#!/usr/bin/env python3
"""Writes cube.npy: hours of light by three notions of day, seven latitudes and twelve months.

The notions are the Sun's centre above the horizon, its upper edge as the air shows it, and civil twilight. The hours
follow from the Sun's declination on the 15th of the month alone, so they are good to a few minutes.
"""
import math
import pathlib
import struct

ALTITUDES = [0.0, -0.833, -6.0]            # of the Sun's centre, degrees
LATITUDES = [0, 15, 30, 45, 52, 60, 70]    # north, degrees
MID_MONTH = [15, 46, 74, 105, 135, 166, 196, 227, 258, 288, 319, 349]


def hours(altitude, latitude, day):
    declination = math.asin(math.sin(math.radians(-23.44)) * math.cos(2 * math.pi * (day + 10) / 365.25))
    phi = math.radians(latitude)
    cosine = (math.sin(math.radians(altitude)) - math.sin(phi) * math.sin(declination)) / (
        math.cos(phi) * math.cos(declination))
    return round(24 / math.pi * math.acos(max(-1.0, min(1.0, cosine))), 2)


values = [hours(a, l, d) for a in ALTITUDES for l in LATITUDES for d in MID_MONTH]
shape = (len(ALTITUDES), len(LATITUDES), len(MID_MONTH))
header = "{'descr': '<f8', 'fortran_order': False, 'shape': %r, }" % (shape,)
header = (header + " " * (-(len(header) + 11) % 64) + "\n").encode("latin1")
path = pathlib.Path(__file__).with_name("cube.npy")
path.write_bytes(b"\x93NUMPY\x01\x00" + struct.pack("<H", len(header)) + header + struct.pack("<%dd" % len(values), *values))
