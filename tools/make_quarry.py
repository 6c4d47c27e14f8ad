#!/usr/bin/env python3
"""Makes examples/quarry.txt: the survey of a limestone quarry that never was, as delimited text. The same file each time.

usage: make_quarry.py [FILE]     without FILE on standard output

Coordinates are metres of an invented local grid, north ahead of east, heights above sea. Lines are told by their name: records in
a row that share one are the stations of one line, and a line that ends on its first station is a polygon.
"""

import math
import random
import sys

HEADER = "Header>> Delimiter(,) FileFormat(name,north,east,height,codes) <<"
NORTH, EAST = 5402180.0, 468450.0  # middle of the pit's floor
FLOOR, RIM = 312.0, 348.0
BENCH = 12.0  # height of a bench, from its toe to its crest
BENCHES = int((RIM - FLOOR) / BENCH)
ROCKS = ("limestone", "marl", "dolomite", "clay")
SPECIES = ("oak", "birch", "hornbeam", "pine")


class Survey:
    def __init__(self):
        self.chance = random.Random(1907)  # the generator's sequence is the same in every version of the language
        self.lines = []

    def noise(self, size):
        """What the rod's place differs from the plan."""
        return (self.chance.random() * 2 - 1) * size

    def point(self, name, north, east, height, code):
        self.lines.append(f"{name},{north:.3f},{east:.3f},{height:.3f},{code}")

    def line(self, name, places, code):
        for place in places:
            self.point(name, *place, code)

    def ring(self, name, places, code):
        # the end is the start to the last digit
        self.line(name, [*places, places[0]], code)


def pit_radius(angle):
    """The toe of the lowest bench: an egg, wide in the north-east."""
    return 46.0 + 9.0 * math.cos(angle - 0.6) + 4.0 * math.sin(3 * angle)


def on_pit(angle, out):
    """A place `out` metres outside the toe of the lowest bench."""
    radius = pit_radius(angle) + out
    return NORTH + radius * math.cos(angle), EAST + 1.35 * radius * math.sin(angle)


def ground(north, east):
    """The natural ground: it falls towards the south-west."""
    return RIM + 0.035 * (north - NORTH) + 0.02 * (east - EAST)


def control_points(survey):
    for number, (d_north, d_east) in enumerate([(148, -172), (165, 140), (-140, 158), (-152, -150), (12, 205)], 1):
        north, east = NORTH + d_north, EAST + d_east
        kind = ("pillar", "bolt", "peg")[number % 3]
        survey.point(f"CP{number}", north + 0.218 * number, east - 0.371 * number, ground(north, east),
                     f"CONTROL:kind={kind}$year={2009 + 3 * number}")


def benches(survey):
    steps = 28
    for bench in range(BENCHES):
        low = FLOOR + bench * BENCH
        for kind, out, height in (("TOE", bench * 15.0, low), ("CREST", bench * 15.0 + 4.5, low + BENCH)):
            # the ramp comes in from the south-west, so a bench is an open line but for the lowest toe, which runs all around
            closed = bench == 0 and kind == "TOE"
            first, last = (0.0, 2 * math.pi) if closed else (-2.2, 3.4)
            count = steps if closed else steps - 2
            places = []
            for step in range(count):
                angle = first + (last - first) * step / (count if closed else count - 1)
                north, east = on_pit(angle, out + survey.noise(0.9))
                places.append((north, east, height + survey.noise(0.25)))
            draw = survey.ring if closed else survey.line
            draw(f"{kind}{bench + 1}", places, f"{kind}:bench={bench + 1}$rock={ROCKS[bench]}")


def haul_road(survey):
    """A spiral from the weighbridge down to the floor, surveyed along both edges and the middle of the safety bank."""
    steps = 18
    for name, out, code in (("ROADL", 11.0, "ROAD:side=left$surface=gravel"), ("ROADR", 2.5, "ROAD:side=right$surface=gravel"),
                            ("BANK1", 12.4, "BANK")):
        places = []
        for step in range(steps):
            part = step / (steps - 1)
            angle = 3.55 + part * 0.5
            north, east = on_pit(angle, out * 0.6 + (1 - part) * 88.0)
            north -= out * 0.8 * math.sin(angle)
            east += out * 0.8 * math.cos(angle)
            rise = 0.9 if name == "BANK1" else 0.0
            places.append((north + survey.noise(0.1), east + survey.noise(0.1),
                           FLOOR + (1 - part) * (ground(north, east) - FLOOR) + rise + survey.noise(0.05)))
        survey.line(name, places, code)


def fence(survey):
    corners = [(132, -178), (150, -20), (158, 128), (60, 190), (-96, 178), (-148, 60), (-150, -120), (-20, -190)]
    places = []
    for index, (d_north, d_east) in enumerate(corners):
        to_north, to_east = corners[(index + 1) % len(corners)]
        for part in (0.0, 1 / 3, 2 / 3):
            north = NORTH + d_north + part * (to_north - d_north) + survey.noise(0.4)
            east = EAST + d_east + part * (to_east - d_east) + survey.noise(0.4)
            places.append((north, east, ground(north, east) + survey.noise(0.3)))
    survey.ring("FENCE1", places, "FENCE:material=chain link$height=2.0")


def buildings(survey):
    for name, d_north, d_east, length, width, code in (
            ("OFFICE", -118, -122, 14.2, 8.6, "BUILDING:use=office"), ("CRUSHER", -96, 96, 22.5, 11.8, "BUILDING:use=crusher"),
            ("STORE", -112, 62, 18.0, 9.4, "BUILDING:use=store"), ("SCALE", -124, -62, 18.0, 3.2, "WEIGHBRIDGE")):
        turn = math.radians(12)
        height = ground(NORTH + d_north, EAST + d_east)
        places = []
        for along, across in ((0, 0), (length, 0), (length, width), (0, width)):
            places.append((NORTH + d_north + along * math.cos(turn) - across * math.sin(turn),
                           EAST + d_east + along * math.sin(turn) + across * math.cos(turn), height + survey.noise(0.02)))
        survey.ring(name, places, code)


def pond(survey):
    places = []
    for step in range(14):
        angle = 2 * math.pi * step / 14
        radius = 11.0 + 2.2 * math.sin(2 * angle) + survey.noise(0.5)
        places.append((NORTH - 12 + radius * math.cos(angle), EAST + 20 + 1.4 * radius * math.sin(angle), FLOOR - 0.85))
    survey.ring("SUMP", places, "WATER:kind=sump")


def single_points(survey):
    for number in range(1, 35):
        angle = 2 * math.pi * number / 34
        if 3.2 < angle < 4.0:
            continue  # the haul road comes in here
        north, east = on_pit(angle, 66.0 + survey.noise(9.0))
        species = SPECIES[survey.chance.randrange(len(SPECIES))]
        survey.point(f"T{number}", north, east, ground(north, east) + survey.noise(0.2),
                     f"TREE:species={species}$girth={0.4 + survey.chance.random() * 1.6:.2f}")
    for number in range(1, 10):
        north = NORTH + 40 * ((number - 1) % 3) - 40 + survey.noise(3)
        east = EAST + 52 * ((number - 1) // 3) - 52 + survey.noise(3)
        survey.point(f"BH{number}", north, east, FLOOR + survey.noise(0.4),
                     f"BOREHOLE:depth={12 + 1.5 * number:.1f}$water={3.2 + survey.chance.random():.2f}$rock={ROCKS[number % 4]}")
    number = 1000
    for row in range(-5, 6):
        for column in range(-7, 8):
            north = NORTH + row * 9.0 + survey.noise(1.4)
            east = EAST + column * 9.0 + survey.noise(1.4)
            d_north, d_east = north - NORTH, (east - EAST) / 1.35
            in_sump = math.hypot(d_north + 12, (east - EAST - 20) / 1.4) < 15
            on_floor = math.hypot(d_north, d_east) < pit_radius(math.atan2(d_east, d_north)) - 2
            if in_sump or not on_floor:
                continue
            number += 1
            survey.point(number, north, east, FLOOR + 0.004 * (north - NORTH) + survey.noise(0.18), "SPOT")
    for number, (d_north, d_east) in enumerate([(-100, -100), (-90, -40), (-120, 20), (-60, 130), (100, -140)], 1):
        north, east = NORTH + d_north, EAST + d_east
        survey.point(f"LP{number}", north + survey.noise(1), east + survey.noise(1), ground(north, east), "LAMP:poles=1,CABLE")


def make():
    survey = Survey()
    for part in (control_points, benches, haul_road, fence, buildings, pond, single_points):
        part(survey)
    return "".join(line + "\n" for line in [HEADER, *survey.lines])


def main():
    text = make().encode("utf-8")
    if len(sys.argv) > 1:
        with open(sys.argv[1], "wb") as file:
            file.write(text)
    else:
        sys.stdout.buffer.write(text)


if __name__ == "__main__":
    main()
