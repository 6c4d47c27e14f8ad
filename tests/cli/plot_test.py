"""Pictures: well-formed, the right way up, readable, and never larger than a browser bears."""

import json
import math
import os
import random
import re
import unittest
import xml.etree.ElementTree as ET

from program import DONE, HEADER, LOSS, OUTPUT, POINTS, QUARRY, ROOT, UNREADABLE, USAGE, ProgramTest

SVG = "{http://www.w3.org/2000/svg}"
NUMBER = r"-?\d+(?:\.\d+)?"


def point(name, north, east, **more):
    return {"point": name, "north": north, "east": east, **more}


def line(*stations, **more):
    return {"polyline": "", "stations": list(stations), **more}


class Picture:
    def __init__(self, content):
        self.size = len(content)
        self.text = content.decode("utf-8")
        self.root = ET.fromstring(content)

    def group(self, name):
        return self.root.find(f".//{SVG}*[@id='{name}']")

    def texts(self, name):
        return [element.text for element in self.group(name).iter(f"{SVG}text")]

    def layers(self, group):
        """The paths of a group by the layer in whose group they are."""
        return {layer.findtext(f"{SVG}title"): layer.findall(f"{SVG}path") for layer in self.group(group).iter(f"{SVG}g")
                if layer.find(f"{SVG}title") is not None}

    def marks(self):
        return [(float(x), float(y)) for path in self.group("points").iter(f"{SVG}path")
                for x, y in re.findall(rf"M({NUMBER}) ({NUMBER})h0", path.get("d"))]

    def samples(self):
        """Colours of the legend's samples from top to bottom."""
        return [element.get("stroke") for element in self.group("legend") if element.tag != f"{SVG}text"]

    def label_boxes(self):
        """Where the labels are, with letters narrower than any font has them, and their classes."""
        boxes = []
        for text in self.group("labels").iter(f"{SVG}text"):
            size = 8 if text.get("class").startswith("code") else 10
            width = len(text.text) * size * 0.55
            left = float(text.get("x")) - {None: 0, "middle": width / 2, "end": width}[text.get("text-anchor")]
            base = float(text.get("y"))
            boxes.append(((left, base - 0.7 * size, left + width, base), text.get("class")))
        return boxes

    def foot(self):
        notes = [element.text for element in self.root.findall(f"{SVG}text[@class='note']")]
        return notes[-1] if notes else ""


def places(path):
    """The places of a path of one row, made of M, l and z."""
    numbers = [float(number) for number in re.findall(NUMBER, path.get("d"))]
    found = [(numbers[0], numbers[1])]
    for i in range(2, len(numbers), 2):
        found.append((found[-1][0] + numbers[i], found[-1][1] + numbers[i + 1]))
    return found


def distance(place, start, end):
    """Of a place from a straight."""
    along = ((place[0] - start[0]) * (end[0] - start[0]) + (place[1] - start[1]) * (end[1] - start[1])) / (math.dist(start, end) ** 2 or 1)
    share = min(max(along, 0), 1)
    return math.dist(place, (start[0] + share * (end[0] - start[0]), start[1] + share * (end[1] - start[1])))


class Plot(ProgramTest):
    def plot(self, *arguments, status=DONE):
        self.said = self.check(status, "plot", *arguments, "-o", "out.svg", "--overwrite").err
        return Picture(self.read("out.svg"))

    def plot_job(self, objects, *arguments, **parts):
        dataset = {"name": "D", "objects": objects} | parts.pop("dataset", {})
        self.write("in.job.json", json.dumps({"alidade": "job", "datasets": [dataset], **parts}))
        return self.plot("in.job.json", *arguments)

    def test_north_is_up_and_east_is_right(self):
        (west, south), (_, north), (east, _) = self.plot_job([point("A", 0, 0), point("B", 100, 0), point("C", 0, 100)]).marks()
        self.assertLess(north, south)
        self.assertGreater(east, west)
        self.assertAlmostEqual(south - north, east - west, delta=0.02)

    def test_grid_and_scale_bar_tell_where_the_points_are(self):
        for units, factor, word in (("metres", 1, "m"), ("us-survey-feet", 3937 / 1200, "ft (US)")):
            with self.subTest(units):
                picture = self.plot_job([point("A", 5000, 1000), point("B", 5300, 1500)], info={"distanceUnits": units})
                ticks = {}
                for text in picture.group("grid").iter(f"{SVG}text"):
                    value, side = text.text.split()
                    ticks.setdefault(side, []).append((float(value), float(text.get("y" if side == "N" else "x"))))
                x, y = picture.marks()[1]
                for side, place, at in (("N", 5300, y + 3.5), ("E", 1500, x)):
                    (first, low), (last, high) = ticks[side][0], ticks[side][-1]
                    self.assertAlmostEqual(low + (place * factor - first) / (last - first) * (high - low), at, delta=0.1)
                scale = (ticks["E"][-1][1] - ticks["E"][0][1]) / (ticks["E"][-1][0] - ticks["E"][0][0])
                bar = sum(float(box.get("width")) for box in picture.group("scale").iter(f"{SVG}rect"))
                told = re.match(rf"(\d+) {re.escape(word)}, grid ", picture.texts("scale")[0])
                self.assertAlmostEqual(bar / scale, float(told.group(1)), delta=0.1)

    def test_degrees_are_drawn_as_wide_as_they_are(self):
        corners = [point(f"{n}", n, e) for n, e in ((60, -10), (60.01, -10), (60, -9.98))]
        circle = {"arc": "", "north": 60.005, "east": -9.99, "radius": 100, "startAngle": 0, "endAngle": 360}
        picture = self.plot_job([*corners, circle], info={"coordinates": "geographic"})
        (west, south), (_, north), (east, _) = picture.marks()
        self.assertAlmostEqual((east - west) / (south - north), 2 * math.cos(math.radians(60.005)), delta=0.001)
        ring = places(picture.layers("lines")["(no layer)"][0])
        spans = [max(part) - min(part) for part in zip(*ring)]
        self.assertAlmostEqual(spans[0], spans[1], delta=0.5)
        self.assertTrue(any(text.endswith("\N{DEGREE SIGN} W") for text in picture.texts("grid")))
        self.assertRegex(picture.texts("scale")[0], r"^about \d+ (m|km), grid 0\.\d+\N{DEGREE SIGN}$")

    def test_an_arc_runs_from_east_towards_north(self):
        frame = [point("", 0, 0), point("", 100, 100)]
        for start, end, first, last in ((0, 90, (0, 10), (10, 0)), (270, 45, (-10, 0), (7.0711, 7.0711)), (90, 0, (10, 0), (0, 10)),
                                        (152.7, 512.7, (4.5865, -8.8862), (4.5865, -8.8862)), (-0.1, 359.9, (-0.0175, 10), (-0.0175, 10)),
                                        (90, 90, (10, 0), (10, 0))):
            with self.subTest(start=start):
                arc = {"arc": "", "north": 50, "east": 50, "radius": 10, "startAngle": start, "endAngle": end}
                picture = self.plot_job([*frame, arc])
                (west, south), (_, north) = picture.marks()
                scale = (south - north) / 100
                row = places(picture.layers("lines")["(no layer)"][0])
                for place, (up, right) in ((row[0], first), (row[-1], last)):
                    self.assertAlmostEqual(place[0], west + (50 + right) * scale, delta=0.2)
                    self.assertAlmostEqual(place[1], south - (50 + up) * scale, delta=0.2)
                length = sum(math.dist(a, b) for a, b in zip(row, row[1:]))
                self.assertAlmostEqual(length, math.radians(round(end - start, 6) % 360 or 360) * 10 * scale, delta=1)

    def test_hostile_names_stay_text(self):
        nasty = "</text><script>alert('1')</script>&\"\u0007\u001b[31m\ufffe"
        shown = "</text><script>alert('1')</script>&\"[31m"
        picture = self.plot_job([point(nasty, 0, 0, layer=nasty, codes=[{"name": nasty}]), point("B", 9, 9)],
                                info={"jobName": nasty}, dataset={"name": nasty})
        self.assertEqual(picture.texts("labels")[0][:20], shown[:20])
        self.assertIn(shown, picture.layers("points"))
        self.assertEqual(picture.root.findtext(f"{SVG}title"), shown)
        self.assertEqual({element.tag for element in picture.root.iter()},
                         {SVG + tag for tag in ("svg", "title", "style", "rect", "g", "path", "text")})
        self.assertNotRegex(picture.text, r"href|url\(|@import|<!")

    def test_colours_line_types_and_layers(self):
        layers = [{"name": "White", "draw": {"kind": "line", "color": "#ffffff"}},
                  {"name": "Red", "draw": {"kind": "line", "color": "#cc0000", "dash": "dashed", "width": 3}},
                  {"name": "Off", "active": False}, {"name": "Empty"}]
        codes = [{"name": "KERB", "draw": [{"kind": "line", "color": "#0000cc"}]}]
        far = [[-1e6, 0], [1e6, 0]]
        objects = [line([0, 0], [9, 0], layer="White"), line([0, 1], [9, 1], layer="Red"),
                   line([0, 2], [9, 2], layer="Red", codes=[{"name": "KERB"}]),
                   line([0, 3], [9, 3], draw={"kind": "line", "color": "#00cc00", "dash": "solid"}, layer="Red"),
                   line(*far, layer="Off"), line(*far, state="block"),
                   {"polygon": "", "stations": [[0, 5], [9, 5], [9, 8]], "draw": {"kind": "area", "color": "#cccc00", "flooded": True}},
                   {"polygon": "", "stations": [[4, 4]]},
                   {"composite": "", "layer": "Red", "parts": [line([0, 9], [9, 9]), point("in", 1, 9)]}]
        picture = self.plot_job(objects, layers=layers, codes=codes)
        drawn = {name: [tuple(path.get(key) for key in ("stroke", "stroke-dasharray", "stroke-width")) for path in paths]
                 for name, paths in picture.layers("lines").items()}
        self.assertEqual(drawn, {"White": [("#202020", None, None)],
                                 "Red": [("#cc0000", "18 12", "3"), ("#0000cc", "18 12", "3"), ("#00cc00", None, "3")],
                                 "(no layer)": [("#b5b500", None, None), ("#404040", None, None)]})
        self.assertEqual([path.get("fill-opacity") for path in picture.layers("lines")["(no layer)"]], ["0.4", "0.07"])
        self.assertEqual(picture.texts("legend"), ["Layers", "White", "1 line", "Red", "3 lines, 1 composite", "Off", "off: 1 line",
                                                   "(no layer)", "2 polygons", "and 1 layer with nothing on it"])
        ground = places(picture.layers("lines")["White"][0])
        self.assertEqual(picture.foot(), "objects within blocks, not drawn: 1")
        self.assertGreater(ground[0][1] - ground[-1][1], 600)  # neither the block nor the layer that is off takes room

    def test_areas_that_lie_on_each_other_are_all_filled(self):
        ring = [[5000000, 400000], [5000000, 400060], [5000060, 400060], [5000030, 400030], [5000060, 400000]]
        for moved in (0, 7, 35):
            turned = [[north + moved, east + moved] for north, east in ring[::-1]]
            objects = [{"polygon": "", "stations": stations, "draw": {"kind": "area", "color": "#00cc00", "flooded": True}}
                       for stations in (ring, turned, ring[2:] + ring[:2])]
            path, = self.plot_job(objects).layers("lines")["(no layer)"]
            windings = []
            for part in path.get("d").strip("M").split("M"):
                row = [(float(x), float(y)) for x, y in re.findall(rf"({NUMBER}) ?({NUMBER})", part)]
                row = [(sum(x for x, _ in row[:i + 1]), sum(y for _, y in row[:i + 1])) for i in range(len(row))]
                windings.append(sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(row, row[1:] + row[:1])) > 0)
            self.assertEqual(windings, [windings[0]] * 3)

    def test_layers_that_are_asked_for(self):
        layers = [{"name": "A"}, {"name": "B,C", "active": False}, {"name": "D"}, {"name": " E", "plot": False}]
        objects = [point("a", 0, 0, layer="A"), point("b", 1, 1, layer="B,C"), point("d", 2, 2, layer="D"), point("n", 3, 3),
                   point("e", 4, 4, layer=" E")]
        for asked, shown in ((("A",), "a"), (("A,D",), "ad"), (("B,C", ), "b"), (("D", "--layers", "B,C"), "bd"), (("A,(no layer)",), "an"),
                             (("A , D",), "ad"), (("A, E",), "ae"), (("A", "--layers", " (no layer) "), "an")):
            with self.subTest(asked):
                picture = self.plot_job(objects, "--layers", *asked, layers=layers)
                self.assertEqual(sorted(picture.texts("labels")), list(shown))
        picture = self.plot("in.job.json", "--layers", "A, E")
        self.assertEqual(picture.texts("legend"), ["Layers", "A", "1 point", "B,C", "not asked for: 1 point", "D", "not asked for: 1 point",
                                                   " E", "1 point; not plotted", "(no layer)", "not asked for: 1 point"])
        self.assertEqual(picture.root.findtext(f"{SVG}text[@class='subtitle']"), "D: 2 points")
        self.assertIn("a picture of 2 points, read as job", self.said)
        os.remove(self.path("out.svg"))
        said = self.check_failure(USAGE, "plot", "in.job.json", "-o", "out.svg", "--layers", "A,F").err
        self.assertIn('there is no layer "F"; there are A, B,C, D,  E and (no layer)', said)

    def test_the_legend_shows_how_most_of_a_layer_looks(self):
        def draw(kind, color, **more):
            return {"draw": {"kind": kind, "color": color, **more}}
        layers = [{"name": "Own", **draw("line", "#cc0000")}, {"name": "Both", **draw("line", "#cc0000")},
                  {"name": "Unused", **draw("line", "#cc0000")}, {"name": "None"}, {"name": "Off", "active": False, **draw("line", "#cc0000")}]
        green, blue, dashed = draw("line", "#00cc00"), draw("point", "#0000cc"), draw("line", "#00cc00", dash="dotted", width=4)
        objects = [line([0, 0], [9, 9], layer="Own", **green), *[line([0, i], [9, i], layer="Own") for i in range(2)],
                   *[line([0, 0], [9, 9], layer="Both", **green) for _ in range(2)], line([0, 1], [9, 1], layer="Both"),
                   line([0, 0], [9, 9], layer="Unused", **dashed), point("", 1, 1, layer="None", **green),
                   *[point("", i, 5, layer="None", **blue) for i in range(2)], point("", 1, 1, layer="Off")]
        picture = self.plot_job(objects, layers=layers)
        self.assertEqual(picture.samples(), ["#cc0000", "#cc0000", "#00cc00", "#00cc00", "#0000cc", "#cc0000"])
        unused = picture.group("legend").findall(f"{SVG}path")[3]
        self.assertEqual([unused.get(key) for key in ("stroke-width", "stroke-dasharray")], ["4", "4 12"])
        self.assertEqual(picture.layers("lines")["Unused"][0].get("stroke-dasharray"), "4 12")

    def test_the_legend_has_as_many_rows_as_the_sheet_has_room_for(self):
        objects = [point("", i, i, layer=f"L{i}") for i in range(320)]
        for height, rows in ((900, 26), (2000, 67), (10000, 300)):
            texts = self.plot_job(objects, "--size", f"400x{height}").texts("legend")
            self.assertEqual(texts.count("1 point"), rows)
            self.assertEqual(texts[-1], f"and {320 - rows} more")

    def test_what_is_rare_is_not_hidden_by_what_is_dense(self):
        random.seed(5)
        def place(scale=500):
            return [round(random.uniform(0, scale), 2), round(random.uniform(0, scale), 2)]
        ring = [[100, 100], [120, 400], [390, 410], [410, 90]]
        layers = [{"name": "rare", "draw": {"kind": "line", "color": "#ff0000", "width": 2}}, {"name": "one"}, {"name": "two"}]
        objects = [line(*(place() for _ in range(4)), layer=name) for name in ("one", "two") for _ in range(25000)]
        picture = self.plot_job([*objects, {"polygon": "", "stations": ring, "layer": "rare"}, line([0, 0], [500, 500], layer="rare")], layers=layers)
        drawn = picture.layers("lines")
        self.assertEqual(list(drawn)[-1], "rare")
        self.assertEqual([path.get("d").count("M") for path in drawn["rare"]], [1, 1])
        corners = places(next(path for path in drawn["rare"] if path.get("d").endswith("z")))
        self.assertEqual(len(corners), 4)
        sizes = [sum(len(path.get("d")) for path in drawn[name]) for name in ("one", "two")]
        self.assertGreater(min(sizes), 0.5 * max(sizes))
        self.assertLess(picture.size, 2000000)

        objects = [point(f"s{i}", *place(), layer="one") for i in range(60000)]
        control = [point(f"CP{i}", 50 + 40 * i, 50 + 40 * i, layer="rare", codes=[{"name": "CTL"}]) for i in range(10)]
        picture = self.plot_job(objects + control, layers=layers)
        drawn = picture.layers("points")
        self.assertEqual(list(drawn), ["one", "rare"])
        self.assertEqual(drawn["rare"][0].get("d").count("h0"), 10)
        self.assertGreater(drawn["one"][0].get("d").count("h0"), 20000 / 1.2 ** 2 * 0.9)
        self.assertLessEqual(float(drawn["one"][0].get("stroke-width")), 3)
        texts = picture.texts("labels")
        self.assertEqual([text for text in texts if text.startswith("C")], [f"CP{i}" for i in range(10)] + ["CTL"] * 10)
        inside = [box for box, kind in picture.label_boxes() if "over" in kind]
        self.assertGreater(len(inside), 30)
        self.assertIsNotNone(re.search(r"\.over\{stroke-width:[34]px\}", picture.text))

    def test_lines_keep_their_course(self):
        random.seed(6)
        frame = [point("", 0, 0), point("", 1000, 1000)]
        contours = [line(*([5 * k + 6 * math.sin(i / 40 + k / 30), i * 1000 / 900] for i in range(900))) for k in range(200)]
        picture = self.plot_job(frame + contours)
        path, = picture.layers("lines")["(no layer)"]
        self.assertEqual((path.get("d").count("M"), picture.foot()), (200, ""))
        self.assertLess(picture.size, 100000)
        row, north, east = [], 500, 500
        for i in range(700):
            north, east = north + random.gauss(0, 3), east + random.gauss(1 if i < 350 else -1, 3)
            row.append([north, east] if i % 50 else [north, 1000])  # now and then far off and back
        picture = self.plot_job([*frame, line(*row)])
        (west, south), (right, _) = picture.marks()
        scale = (right - west) / 1000
        drawn = places(picture.layers("lines")["(no layer)"][0])
        self.assertLess(len(drawn), 700)
        for north, east in row:
            at = (west + east * scale, south - north * scale)
            self.assertLess(min(distance(at, a, b) for a, b in zip(drawn, drawn[1:])), 0.3)

    def test_parts_are_drawn_with_their_own_layer(self):
        layers = [{"name": "On"}, {"name": "Off", "active": False}]
        parts = [point("on", 0, 0, layer="On"), point("off", 1, 1, layer="Off"), point("none", 2, 2)]
        for whole, asked, shown in (("On", (), ["none", "on"]), ("Off", (), ["on"]), ("On", ("--layers", "Off"), ["off"]),
                                    ("Off", ("--layers", "Off"), ["none", "off"]), (None, (), ["none", "on"]), (None, ("--layers", "On"), ["on"])):
            with self.subTest(whole, asked=asked):
                composite = {"composite": "", "parts": parts} | ({"layer": whole} if whole else {})
                picture = self.plot_job([composite], *asked, layers=layers)
                self.assertEqual(sorted(picture.texts("labels")), shown)
        self.assertEqual(picture.texts("legend"), ["Layers", "On", "1 part", "Off", "not asked for: 1 part",
                                                   "(no layer)", "not asked for: 1 composite"])

    def test_surfaces_and_alignments(self):
        positions = [[0, 0], [0, 100], [80, 50], [160, 50], [1, 1e300]]
        dataset = {"surfaces": [{"name": "S", "positions": positions, "triangles": [[0, 1, 2], [1, 2, 3], [0, 1, -1], [0, 1, 4]]}],
                   "alignments": [{"name": "Road", "startPoint": 0, "objects": [
                       {"type": "line", "azimuth": 0, "length": 100},
                       {"type": "curve", "radius": 40, "length": 40 * math.pi, "azimuthFollows": True}]}]}
        picture = self.plot_job([point("0", 0, 0)], dataset=dataset)
        self.assertEqual(picture.group("surfaces").get("d").count("M"), 5)
        self.assertEqual(picture.foot(), "triangles without all corners, not drawn: 2")
        road = places(picture.layers("lines")["(no layer)"][0])
        scale = math.dist(road[0], max(road, key=lambda place: -place[1] - place[0] * 1e-6)) / 146  # north by 100, then a half circle
        self.assertAlmostEqual((road[-1][0] - road[0][0]) / scale, 80, delta=5)
        self.assertIn("Road", picture.texts("labels"))
        self.assertIn("1 point, 1 surface, 1 alignment", picture.texts("legend"))

    def test_alignments_that_cannot_be_followed_are_told(self):
        ahead = {"type": "line", "azimuth": 0, "length": 100}
        between = {"type": "line", "start": [0, 0], "end": [50, 50]}
        starts = [{"type": "line", "length": 70, "start": place} for place in ([0, 0], [50, 50])]
        without, in_part = "alignments without a place, not drawn: 1", "alignments drawn in part, as far as they tell where they lie: 1"
        rows = [("plane", None, [ahead], without), ("plane", 0, [ahead], ""), ("plane", None, [], without),
                ("plane", None, [ahead, between], in_part), ("plane", 0, [between, ahead], ""),
                ("geographic", 0, [ahead], in_part), ("geographic", None, [ahead], without), ("geographic", None, [between], ""),
                ("geographic", None, [between, ahead], in_part), ("geographic", None, [*starts, between], ""),
                ("geographic", None, [ahead, *starts], in_part), ("geographic", None, starts, in_part)]
        for system, start, elements, told in rows:
            for objects in ([point("0", 0, 0), point("1", 50, 50)], [])[:1 if start == 0 else 2]:
                with self.subTest(system, start=start, elements=elements, objects=objects):
                    road = {"name": "R", "objects": elements} | ({} if start is None else {"startPoint": start})
                    picture = self.plot_job(objects, dataset={"alignments": [road]}, info={"coordinates": system})
                    self.assertEqual(picture.foot(), told)
                    self.assertIn(told, self.said)
                    if objects:
                        self.assertEqual("R" in picture.texts("labels"), told != without)

    def test_labels_do_not_collide(self):
        random.seed(3)
        for count, least in ((300, 100), (5000, 50)):
            objects = [point(f"P{i}", random.random() * 100, random.random() * 100, codes=[{"name": "C"}]) for i in range(count)]
            picture = self.plot_job(objects)
            radius = float(picture.group("points").find(f".//{SVG}path").get("stroke-width")) / 2
            boxes, marks = picture.label_boxes(), picture.marks()
            for i, ((left, top, right, bottom), kind) in enumerate(boxes):
                for (other_left, other_top, other_right, other_bottom), _ in boxes[:i]:
                    self.assertTrue(right <= other_left or other_right <= left or bottom <= other_top or other_bottom <= top)
                covered = [1 for x, y in marks if left - radius < x < right + radius and top - radius < y < bottom + radius]
                self.assertEqual(covered if kind in ("name", "code") else [], [])
            names, over = (sum(kind == wanted for _, kind in boxes) for wanted in ("name", "name over"))
            self.assertGreater(names, least)
            self.assertEqual(over > 0, count > 1500)  # the last resort
            self.assertIn(f"labels: {names + over:,} of {count:,} shown", picture.foot())
        self.assertEqual(self.plot_job(objects, "--no-labels").texts("labels"), [])

    def test_a_code_that_says_nothing_of_the_point_is_no_label(self):
        extras = [{"name": "JP.DATASETEXTRAS"}]
        picture = self.plot_job([point("A", 0, 0, codes=extras + [{"name": "TREE"}]), point("JP.DATASETEXTRAS", 50, 50, codes=extras),
                                 point("", 99, 99, codes=[{"name": "KERB"}, *extras])])
        self.assertEqual(sorted(picture.texts("labels")), ["A", "KERB", "TREE"])
        self.assertEqual(picture.foot(), "")

    def test_codes_stand_where_there_is_room(self):
        objects = [point(f"P{i}", i // 8 * 10, i % 8 * 10, codes=[{"name": f"C{i}"}]) for i in range(48)]
        for size in ("600x450", "800x600", "801x607", "1000x753", "1200x900", "1611x1203", "2000x500"):
            with self.subTest(size):
                picture = self.plot_job(objects, "--size", size)
                shown = [text.text for text in picture.group("labels").iter(f"{SVG}text") if text.get("class") == "code"]
                self.assertEqual(sorted(shown), sorted(f"C{i}" for i in range(48)))
                self.assertEqual(picture.foot(), "")
        crowded = self.plot_job(objects + [point("", 60, 3, codes=[{"name": "LONE"}]), point("bare", 60, 30)], "--size", "400x300")
        classes = [text.get("class") for text in crowded.group("labels").iter(f"{SVG}text") if text.text != "LONE"]
        self.assertEqual(crowded.foot(), f"labels: {classes.count('name') + 1} of 50 shown; codes: {classes.count('code')} of 48 shown")
        self.assertLess(classes.count("code"), 48)

    def test_a_hundred_thousand_of_each_stay_small(self):
        random.seed(4)
        def place():
            return [round(random.gauss(5e6, 500), 2), round(random.gauss(4e5, 500), 2)]
        self.write("points.txt", HEADER + "".join("P{0},{1},{2},1,C{0}\n".format(i, *place()) for i in range(100000)))
        picture = self.plot("points.txt")
        self.assertLess(picture.size, 1000000)
        self.assertLessEqual(len(picture.marks()), 20000)
        self.assertGreater(len(picture.marks()), 5000)
        self.assertRegex(picture.foot(), r"^labels: [\d,]+ of 100,000 shown; codes: [\d,]+ of 100,000 shown; points: [\d,]+ of 100,000 shown$")
        picture = self.plot_job([line(place(), place(), layer=f"L{i}", draw={"kind": "line", "color": f"#{i * 77:06x}"})
                                 for i in range(100000)])
        self.assertLess(picture.size, 3000000)
        self.assertLess(len(list(picture.root.iter())), 10000)
        self.assertIn("and 99,974 more", picture.texts("legend"))
        self.assertRegex(picture.foot(), r"lines: [\d,]+ of 100,000 shown; lines of a kind within [\d.]+ pixels? are merged$")

    def test_a_window_shows_a_part_alone(self):
        layers = [{"name": name} for name in ("lot", "pond", "road", "ring", "far")]
        flooded = {"draw": {"kind": "area", "color": "#00a000", "flooded": True}}
        objects = [point("in", 105, 205), point("rim", 100, 200), point("out", 99.99, 205),
                   line([0, 150], [210, 255], layer="road"), line([0, 150], [101, 150], layer="far"),
                   line([105, 0], [105, 203], [300, 203], [300, 207], [105, 207], [105, 9e11], layer="road"),
                   {"polygon": "", "stations": [[-1e9, -1e9], [-1e9, 1e9], [1e9, 0]], "layer": "lot", **flooded},
                   {"polygon": "", "stations": [[0, 0], [0, 90], [90, 90]], "layer": "far"},
                   {"arc": "", "north": 105, "east": -1e6 + 208, "radius": 1e6, "startAngle": -90, "endAngle": 90, "layer": "ring"},
                   {"arc": "", "north": 105, "east": -1e6 + 230, "radius": 1e6, "startAngle": -90, "endAngle": 90, "layer": "far"},
                   {"composite": "", "layer": "pond", "parts": [point("p", 109, 209), point("q", 0, 0)]}]
        surface = {"name": "S", "positions": [[104, 190], [104, 1e9], [1e9, 190]], "triangles": [[0, 1, 2]]}
        road = {"name": "A", "startPoint": 2, "objects": [{"type": "line", "azimuth": 0, "length": 100}]}
        for window in ("100,200,110,210", "110,200,100,210", " 110 , 210,100,2e2"):
            picture = self.plot_job(objects, "--window", window, layers=layers, dataset={"surfaces": [surface], "alignments": [road]})
            self.assertEqual(sorted(picture.texts("labels")), ["in", "p", "rim"])
        self.assertEqual(picture.texts("legend"), ["Layers", "lot", "1 polygon", "pond", "1 composite", "road", "2 lines", "ring", "1 arc",
                                                   "(no layer)", "2 points, 1 surface, 1 alignment", "and 1 layer with nothing on it"])
        self.assertIn("objects outside the window, not drawn: 4", picture.foot())
        frame = picture.root.find(f"{SVG}svg")
        left, top, width, height = (float(frame.get(key)) for key in ("x", "y", "width", "height"))
        self.assertAlmostEqual(width, height, delta=0.02)
        scale = width / 10
        (rim, inner) = sorted(picture.marks())[:2]
        self.assertEqual([round(value, 1) for value in rim], [round(left, 1), round(top + height, 1)])
        self.assertAlmostEqual(inner[0], left + 5 * scale, delta=0.1)
        for name, way in {"road": [(-2, 5), (3, 5), (3, 12), (7, 12), (7, 5), (12, 5)], "ring": [(8, -2), (8, 12)]}.items():
            rows = ["M" + row for row in picture.layers("lines")[name][-1].get("d").split("M")[1:]]
            drawn = [place for row in rows for place in places(ET.Element("path", d=row))]
            for east, north in way:  # cut a fifth beyond the window
                at = (left + east * scale, top + height - north * scale)
                self.assertLess(min(math.dist(at, place) for place in drawn), 0.4, (name, east, north))
            for x, y in drawn:
                self.assertTrue(left - width / 4 < x < left + width * 1.25 and top - height / 4 < y < top + height * 1.25)
        lot = places(picture.layers("lines")["lot"][0])
        self.assertEqual((min(x for x, _ in lot) < left - 40, max(x for x, _ in lot) > left + width + 40), (True, True))

        picture = self.plot("in.job.json", "--window=-5,-3,-8,12")
        self.assertEqual(picture.texts("legend"), ["Layers", "lot", "1 polygon", "and 4 layers with nothing on them"])
        self.assertEqual(picture.foot(), "objects outside the window, not drawn: 12")
        for bad in ("1,2,3", "1,2,3,4,5", "1,2,1,4", "1,2,3,2", "1,nan,3,4", "1,2,inf,4", "1e13,2,3,4", "a,2,3,4", ""):
            with self.subTest(bad):
                answer = self.run_program("plot", "in.job.json", "-o", "new.svg", "--window", bad)
                self.assertEqual(answer.status, USAGE)
                self.assertIn(f'"{bad}" isn\'t north and east of two corners', answer.err)

    def test_a_window_is_proposed_where_little_lies_far_off(self):
        random.seed(7)
        near = [point(f"{i}", 5000 + random.uniform(0, 80), 1000 + random.uniform(0, 120)) for i in range(60)]
        feet = {"distanceUnits": "us-survey-feet"}
        degrees = [point(f"{i}", 48 + random.uniform(0, 0.001), -11 + random.uniform(0, 0.001)) for i in range(60)]
        for objects, info, shown in ((near + [point("far", 0, 0)], {}, 60), (near + [point("far", 0, 0)], feet, 60), (near, {}, None),
                                     ([point("", 7, 7)] * 20 + [point("far", 70, -70)], {}, 20), (near + [point("", 5400, 1000)], {}, None), (near[:5] + [point("far", 0, 0)], {}, None),
                                     (degrees + [point("far", 0, 0)], {"coordinates": "geographic"}, 60)):
            with self.subTest(info=info, shown=shown):
                self.plot_job(objects, info=info)
                proposed = re.search(r"little lies far off; (--window=\S+) draws the rest larger", self.said)
                self.assertEqual(proposed is None, shown is None)
                if proposed:
                    picture = self.plot("in.job.json", proposed.group(1))
                    self.assertEqual(len(picture.marks()), shown)
                    self.assertNotIn("little lies far off", self.said)
                    box = picture.root.find(f"{SVG}svg")
                    spread = max(x for x, _ in picture.marks()) - min(x for x, _ in picture.marks())
                    self.assertEqual(spread > 0.7 * float(box.get("width")), shown == 60)

    def test_extents_of_every_size(self):
        for name, coordinates in {"one": [(5402328.2, 468277.6)], "same": [(7, 7)] * 3, "huge": [(1e10, -1e10), (-1e10, 1e10)],
                                  "flat": [(0, 0), (0, 1e11)], "close": [(9e11, 0), (9e11 + 1e-3, 0)], "tiny": [(0, 0), (5e-324, 0)]}.items():
            for size in ("400x300", "1200x900"):
                with self.subTest(name, size=size):
                    picture = self.plot_job([point("", *place) for place in coordinates], "--size", size)
                    width, height = (int(part) for part in size.split("x"))
                    self.assertEqual((picture.root.get("width"), picture.root.get("height")), (str(width), str(height)))
                    self.assertEqual(len(picture.marks()), len(coordinates))
                    for x, y in picture.marks():
                        self.assertTrue(0 < x < width and 0 < y < height)
                    self.assertLess(picture.size, 20000)
                    self.assertNotRegex(picture.text, r"\b(nan|inf)\b")

    def test_what_has_no_place_is_told(self):
        along = {"ptlPoint": "P", "north": 5, "east": 1, "coordType": "point-to-line", "firstReference": "A", "secondReference": "A"}
        picture = self.plot_job([point("A", 1, 1), point("B", 1e300, 1), along])
        self.assertEqual(picture.foot(), "points told along a line, not drawn: 1; beyond any place on earth, not drawn: 1")
        self.assertIn("beyond any place on earth", self.said)
        picture = self.plot_job([])
        self.assertIn("Nothing to draw", picture.text)
        self.assertIn("nothing to draw", self.said)

    def test_the_output_is_as_safe_as_that_of_a_conversion(self):
        self.write("in.txt", POINTS)
        self.write("bad.txt", POINTS + "A3,x,1,1,\n")
        self.write("old.svg", "stays")
        good = ("plot", "in.txt", "-o", "new.svg")
        rows = [(OUTPUT, ("plot", "in.txt", "-o", "old.svg")), (OUTPUT, ("plot", "in.txt", "-o", "nowhere/new.svg")),
                (UNREADABLE, ("plot", "missing.txt", "-o", "new.svg")), (USAGE, ("plot", "in.txt", "-o", "new.png"))]
        for status, arguments in rows:
            with self.subTest(arguments):
                self.check_failure(status, *arguments)
        for arguments in (("plot", "in.txt"), *((*good, "--size", size) for size in ("399x300", "400x299", "10001x500", "400", "axb", "-400x300", "400x300x")),
                          (*good, "--layers"), (*good, "--to", "sima")):
            with self.subTest(arguments):
                self.assertEqual(self.run_program(*arguments).status, USAGE)
        self.check(LOSS, "plot", "bad.txt", "-o", "bad.svg")
        self.assertEqual(self.check(DONE, *good, "--quiet").err, "")
        self.assertEqual(self.names(), ["bad.svg", "bad.txt", "in.txt", "new.svg", "old.svg"])
        self.assertEqual(self.read("old.svg"), b"stays")

    def test_a_picture_never_replaces_what_it_shows(self):
        self.write("points", POINTS)
        os.symlink("points", self.path("link.svg"))
        os.symlink(self.folder, self.path("here"))
        for out in ("points", "./points", "link.svg", "here/points"):
            with self.subTest(out):
                self.check_failure(USAGE, "plot", "points", "--from", "0", "-o", out, "--overwrite")
                self.assertEqual(self.read("points").decode(), POINTS)

    def test_the_quarry(self):
        picture = self.plot(QUARRY)
        self.assertLess(picture.size, 50000)
        self.assertEqual(len(picture.marks()), 137)
        self.assertIn("CP1", picture.texts("labels"))
        self.assertIn("137 points, 8 lines, 7 polygons", picture.texts("legend"))
        with open(os.path.join(ROOT, "docs/images/quarry.svg"), encoding="utf-8") as file:
            self.assertEqual(picture.text, file.read(), "docs/images/quarry.svg isn't what the program draws")


if __name__ == "__main__":
    unittest.main()
