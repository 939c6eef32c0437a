#!/usr/bin/env python3
"""Writes the static geometry of this folder, one file for each version of the form, with nothing of the library.

The same city stands in tests/staticgeometry/QXGoldenCity.h; whoever changes one changes both."""
import os
import struct
import sys


class Writer:
    """Little-endian fields one behind the other; every operation returns the writer."""

    def __init__(self):
        self.data = bytearray()

    def put(self, form, *values):
        self.data += struct.pack("<" + form, *values)
        return self

    def i32(self, *values):
        return self.put("%di" % len(values), *values)

    def u32(self, *values):
        return self.put("%dI" % len(values), *values)

    def u16(self, *values):
        return self.put("%dH" % len(values), *values)

    def u8(self, *values):
        return self.put("%dB" % len(values), *values)

    def f32(self, *values):
        return self.put("%df" % len(values), *values)

    def f64(self, *values):
        return self.put("%dd" % len(values), *values)

    def text(self, value):
        raw = value.encode("utf-8")
        self.u32(len(raw))
        self.data += raw
        return self


FILTERS = (2, 2, 1)
IDENTITY = [float(i % 5 == 0) for i in range(16)]


def vertex_package(w, package):
    position, normal = package["dims"]
    w.i32(package["options"]).u16(position if position == normal else position | normal << 8)
    for name, dim in (("positions", position), ("normals", normal)):
        numbers, stride = package.get(name, ([], 0))
        w.u32(len(numbers) // dim)
        if numbers:
            w.u16(stride).f32(*numbers)
    colours, stride = package.get("colours", ([], 0))
    w.u32(len(colours))
    if colours:
        w.u16(stride).u32(*colours)
    units = package.get("units", [])
    w.i32(len(units))
    for dim, stride, numbers in units:
        w.u16(dim).u32(len(numbers) // dim).u16(stride).f32(*numbers)


def index_package(w, operation, width, flag, names, indices):
    w.i32(operation, 0 if width == 16 else 1).u8(flag).i32(len(names))
    for name in names:
        w.text(name)
    w.i32(len(indices))
    w.u16(*indices) if width == 16 else w.u32(*indices)


def unit_state(w, texture, matrix=IDENTITY, filters=FILTERS, effects=()):
    w.text(texture).f64(*matrix).i32(*filters).i32(len(effects))
    for effect in effects:
        w.i32(*effect)


def brick_pass(w):
    """Everything differs from what a new pass has."""
    w.text("wall of brick").i32(1).text("wall.vert").text("wall.frag")
    w.f64(*[i * 0.5 for i in range(16)]).i32(42).u32(1, 2, 3, 0, 0, 0, 0, 0xFFFFFFFF).u8(1)
    for colour in ((0.1, 0.2, 0.3, 0.4), (0.5, 0.6, 0.7, 0.8), (0.9, 1.0, 0.0, 0.25), (2.0, -1.0, 0.125, 0.75)):
        w.f64(*colour)
    w.f64(32.5).u8(0).i32(9, 7, 2).u8(0, 0).i32(5, 7).u8(128).f64(2.5, 3.5)
    w.i32(2)
    unit_state(w, "brick.png", [float(i) for i in range(16)], (3, 1, 2), ((0, 3), (2, 1)))
    unit_state(w, "")
    w.u8(1).i32(1).f32(*[i * 0.25 for i in range(10)]).f32(*[-float(i) for i in range(10)])


def roof_pass(w):
    """A new pass with one texture."""
    w.text("roof").i32(0).text("").text("")
    w.f64(*IDENTITY).i32(0).u32(*[0] * 8).u8(0)
    for colour in ((1, 1, 1, 1), (1, 1, 1, 1), (0, 0, 0, 1), (0, 0, 0, 1)):
        w.f64(*colour)
    w.f64(0).u8(1).i32(0, 1, 1).u8(1, 1).i32(3, 1).u8(0).f64(1, 1)
    w.i32(1)
    unit_state(w, "d\u00e4cher.png")
    w.u8(0)


def sub_object(w, centre, radius, slots, offsets, counts):
    w.f64(*centre, radius).i32(len(slots))
    for slot in slots:
        w.i32(*slot)
    w.i32(len(offsets), *offsets).i32(len(counts), *counts)


def wide_bucket(w, version):
    """32-bit indices, two levels, two passes, two sub-objects."""
    w.i32(1)
    if version > 1.1:
        w.i32(0)
    vertex_package(w, {
        "options": 0x407,
        "dims": (3, 3),
        "positions": ([0, 0, 0, 1, 0, 0, 0, 1, 0, 8, 8, -0.5], 12),
        "normals": ([0, 0, 1, 0, 0, 1, 0, 1, 0, 1, 0, 0], 0),
        "colours": ([0xFF0000FF, 0xFF00FF00, 0xFFFF0000, 0x80FFFFFF], 4),
        "units": [(2, 0, [0, 0, 1, 0, 0, 1, 0.5, 0.25]), (4, 16, list(range(16)))],
    })
    w.i32(2)
    w.i32(0, 2)
    index_package(w, 4, 32, 1, ["brick"], [0, 1, 2])
    index_package(w, 4, 32, 0, ["d\u00e4cher", "brick"], [1, 2, 3, 0, 70000, 2])
    w.i32(2, 1)
    index_package(w, 2, 16, 0, [], [0, 3])
    w.i32(2)
    w.text("brick")
    brick_pass(w)
    w.text("d\u00e4cher")
    roof_pass(w)
    if version > 1.0:
        w.i32(2)
        w.i32(0)
        sub_object(w, (1.5, 2.5, -3.5), 4.25, ((0, 0), (1, 1)), (0, 3), (3, 6))
        w.i32(3)
        sub_object(w, (0, 0, 0), -1.0, (), (), ())


def narrow_bucket(w, version, kind):
    """16-bit indices, normals of another dimension, nothing else."""
    w.i32(0)
    if version > 1.1:
        w.i32(kind)
    vertex_package(w, {"options": 7, "dims": (3, 2), "positions": ([1, 2, 3, 4, 5, 6], 0),
                       "normals": ([0, 1, 1, 0], 8)})
    w.i32(1)
    w.i32(0, 1)
    index_package(w, 1, 16, 0, [""], [0, 1])
    w.i32(0)
    if version > 1.0:
        w.i32(0)


def empty_bucket(w, version):
    """What a new bucket is."""
    w.i32(0)
    if version > 1.1:
        w.i32(-1)
    vertex_package(w, {"options": 7, "dims": (3, 3)})
    w.i32(0, 0)
    if version > 1.0:
        w.i32(0)


def city(version):
    w = Writer().f64(version)
    if version > 1.0:
        w.i32(3, 7, -1, 2147483647)
    w.i32(1)
    wide_bucket(w, version)
    w.i32(2)
    narrow_bucket(w, version, -7)
    empty_bucket(w, version)
    if version > 1.1:
        w.i32(0)
        w.i32(1)
        narrow_bucket(w, version, 1)
    if version > 1.2:
        w.i32(2)
        w.text("brick.png").i32(2).f64(1, 2, 3, 4, -5.5, 6, 7, 0)
        w.text("d\u00e4cher.png").i32(0)
    return bytes(w.data)


def main():
    folder = os.path.dirname(os.path.abspath(sys.argv[0]))
    for version in (1.0, 1.1, 1.2, 1.3):
        with open(os.path.join(folder, "city-%.1f.qsg" % version), "wb") as out:
            out.write(city(version))


main()
