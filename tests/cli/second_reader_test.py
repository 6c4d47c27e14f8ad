"""Drawings read by the program and by a second reader, ezdxf (Debian's python3-ezdxf). What differs is a fault, or stands in the table
DIFFERENCES with its reason. The drawings lie beside the project and not in it: ALIDADE_CORPUS, or ../shared/corpus."""

import collections
import json
import os
import sys
import unittest

DEBIANS_PYTHON = "/usr/bin/python3"
try:
    import ezdxf
    from ezdxf import recover
except ImportError:
    if os.path.exists(DEBIANS_PYTHON) and not os.environ.get("ALIDADE_SECOND_READER"):
        os.execve(DEBIANS_PYTHON, [DEBIANS_PYTHON, "-B", *sys.argv], {**os.environ, "ALIDADE_SECOND_READER": "sought"})
    ezdxf = None

from program import CONTENT, DONE, OUTPUT, ROOT, ProgramTest

COLLECTION = os.environ.get("ALIDADE_CORPUS") or os.path.join(ROOT, "../shared/corpus")
CORPUS = os.path.join(COLLECTION, "dxf")
KEYS = ("points", "lines", "line vertices", "polygons", "polygon vertices", "arcs", "faces", "layers")

# what the second reader can't read, and why
UNREADABLE = {
    "ezdxf-issue" "1106.dxf": "DXFTypeError: name has to be a string",
    "ezdxf-layout-broken-links.dxf": "KeyError: 'FFFA'",
    "gdal-hatch.dxf": "IndexError: list index out of range",
    "gds-blocks.dxf": "AttributeError: 'NoneType' object has no attribute 'get_xlist'",
    "gds-tables.dxf": "DXFTypeError: name has to be a string",
}

# what the audit of a drawing of ours complains of; docs/formats.md tells of it
FAULTS = {
    "INVALID_OWNER_HANDLE": "Deleted SEQEND(",  # of polylines within blocks
    "INVALID_LAYER_NAME": "\\U+",  # names beyond ASCII
}

# drawing: {count: (ours, theirs, reason)}
DIFFERENCES = {
    "bert-all-R10-entities.dxf": {
        "lines": (5, 4, "the second reader passes over 3DLINE"),
        "line vertices": (14, 12, "likewise"),
    },
    "sky-entities.dxf": {
        "lines": (39, 35, "blocks and texts that are named line and polyline begin such an entity"),
        "line vertices": (78, 74, "likewise"),
        "arcs": (15, 13, "likewise"),
    },
    "gdal-closed_polyline_with_bulge.dxf": {
        "lines": (0, 1, "flags 129 say closed; the second reader has flags 0 after it mended the drawing"),
        "line vertices": (0, 8, "likewise"),
        "polygons": (1, 0, "likewise"),
        "polygon vertices": (8, 0, "likewise"),
    },
}


def open_second(path):
    try:
        return ezdxf.readfile(path)
    except Exception:  # whatever it is, the lenient reader has its turn
        return recover.readfile(path)[0]


def is_dropped(entity):
    marks = ["paperspace"] if entity.dxftype() == "3DFACE" else ["paperspace", "invisible"]  # a face's are its edges
    return any(entity.dxf.is_supported(mark) and entity.dxf.get(mark, 0) == 1 for mark in marks)


def read_polyline(entity):
    stations = [tuple(vertex.dxf.location) for vertex in entity.vertices if not is_dropped(vertex)]
    closed = entity.dxf.flags & 1 or (len(stations) > 1 and stations[0] == stations[-1])
    return ("polygon" if closed else "line", stations)


def read_lightweight(entity):
    stations = [(x, y, 0.0) for x, y in entity.get_points("xy")]
    return ("polygon" if entity.closed else "line", stations) if stations else None


SHAPES = {
    "POINT": lambda entity: ("point", [tuple(entity.dxf.location)]),
    "LINE": lambda entity: ("line", [tuple(entity.dxf.start), tuple(entity.dxf.end)]),
    "ARC": lambda entity: ("arc", [tuple(entity.dxf.center)]),
    "POLYLINE": read_polyline,
    "LWPOLYLINE": read_lightweight,
}


class Second:
    """What of a drawing comes in by the program's rules: a reference copies what its block holds by then; faces go into one surface,
    those of blocks too."""

    def __init__(self, doc):
        self.blocks = {}
        self.faces = 0
        for block in doc.blocks:
            if not block.is_any_layout:
                name = block.name.upper()
                self.blocks[name] = []
                self.take(block, self.blocks[name])
        self.copied = []
        self.direct = []
        self.take(doc.modelspace(), self.direct, self.copied)
        self.layers = {layer.dxf.name.upper() for layer in doc.layers}

    def take(self, entities, direct, copied=None):
        for entity in entities:
            kind = entity.dxftype()
            if is_dropped(entity):
                continue
            if kind == "3DFACE":
                self.faces += 1
            elif kind == "INSERT":
                (direct if copied is None else copied).extend(self.blocks.get(entity.dxf.get("name", "").upper(), [])[:])
            elif kind in SHAPES:
                shape = SHAPES[kind](entity)
                if shape:
                    direct.append(shape)

    def counts(self):
        return count(self.direct + self.copied, self.faces)


def count(shapes, faces):
    counts = collections.Counter(faces=faces)
    for kind, stations in shapes:
        counts[kind + "s"] += 1
        if kind in ("line", "polygon"):
            counts[kind + " vertices"] += len(stations)
    return counts


def station_of(value):
    if isinstance(value, dict):
        value = (value["north"], value["east"], value.get("height", 0.0))
    north, east, height = (*value, 0.0)[:3]
    return (east, north, height)


def shapes_of(job, wanted):
    kinds = {"point": "point", "polyline": "line", "polygon": "polygon", "arc": "arc"}
    shapes = []
    for dataset in job["datasets"]:
        for thing in dataset.get("objects", []):
            kind = next(kind for kind in kinds if kind in thing)
            if thing.get("state") != "block" and wanted(thing[kind]):
                stations = [thing] if kind in ("point", "arc") else thing.get("stations", [])
                shapes.append((kinds[kind], [station_of(station) for station in stations]))
    return shapes


def closed_vertices(thing):
    """A ring of three stations and more goes out with its first station behind the last."""
    stations = len(thing.get("stations", []))
    return stations + 1 if stations >= 3 else stations


def triangles_of(job):
    return sum(len(surface["triangles"]) for dataset in job["datasets"] for surface in dataset.get("surfaces", []))


@unittest.skipUnless(ezdxf, "python3-ezdxf isn't installed")
class Drawings(ProgramTest):
    def read_drawing(self, path):
        answer = self.run_program("convert", path, "out.job.json", "--from", "dxf", "--overwrite", "--coordinates", "plane")
        if answer.status == CONTENT and "holds nothing that could be used" in answer.err:
            return {"datasets": []}  # texts and circles without any layer
        self.assertEqual(answer.status, DONE, answer.err)
        with open(self.path("out.job.json"), encoding="utf-8") as file:
            return json.load(file)

    @unittest.skipUnless(os.path.isdir(CORPUS), f"there is no folder {CORPUS}")
    def test_both_readers_find_the_same(self):
        paths = [os.path.join(folder, name) for folder in (CORPUS, os.path.join(COLLECTION, "dxf-binary"))
                 for name in sorted(os.listdir(folder)) if name.endswith(".dxf")]
        self.assertGreater(len(paths), 0)
        for path in paths:
            name = os.path.basename(path)
            if name in UNREADABLE:
                print(f"skipped: {name}: the second reader can't read it: {UNREADABLE[name]}", file=sys.stderr)
                continue
            with self.subTest(path):
                second = Second(open_second(path))
                job = self.read_drawing(path)
                ours = count(shapes_of(job, lambda _: True), triangles_of(job))
                theirs = second.counts()
                layers = {layer["name"].upper() for layer in job.get("layers", [])}
                # the second reader adds these two where they lack
                missing = second.layers - layers - {"0", "DEFPOINTS"}
                ours["layers"], theirs["layers"] = len(layers), len((second.layers & layers) | missing)
                found = {key: (ours[key], theirs[key]) for key in KEYS if ours[key] != theirs[key]}
                known = {key: values[:2] for key, values in DIFFERENCES.get(name, {}).items()}
                self.assertEqual(found, known)
                if not found:
                    self.assert_same_places(shapes_of(job, lambda label: label == ""), second.direct)

    def assert_same_places(self, ours, theirs):
        """Objects without a name are those that the drawing has itself."""
        if len(ours) != len(theirs):
            return  # some have names from codes
        for (kind, stations), (their_kind, their_stations) in zip(ours, theirs):
            self.assertEqual((kind, len(stations)), (their_kind, len(their_stations)))
            for mine, other in zip(stations, their_stations):
                for value, their_value in zip(mine, (*other, 0.0)[:3]):
                    self.assertAlmostEqual(value, their_value, delta=1e-9 * max(1.0, abs(value)))

    def test_the_second_reader_takes_what_we_write(self):
        drawings = [os.path.join(ROOT, "examples", "quarry.txt")]
        if os.path.isdir(CORPUS):
            drawings += [os.path.join(CORPUS, name) for name in sorted(os.listdir(CORPUS)) if name.endswith(".dxf")]
        else:
            print(f"skipped: drawings of the corpus: there is no folder {CORPUS}", file=sys.stderr)
        for path in drawings:
            name = os.path.basename(path)
            form = ("--from", "dxf") if name.endswith(".dxf") else ()
            with self.subTest(name):
                answer = self.run_program("convert", path, "out.dxf", *form, "--overwrite", "--coordinates", "plane")
                if answer.status in (CONTENT, OUTPUT) and "nothing" in answer.err:
                    continue  # texts and circles alone
                self.assertEqual(answer.status, DONE, answer.err)
                self.check(DONE, "convert", path, "out.job.json", *form, "--overwrite", "--coordinates", "plane")
                self.assert_taken(open_second(self.path("out.dxf")), self.read_json("out.job.json"))

    def assert_taken(self, doc, job):
        modelspace = doc.modelspace()
        auditor = doc.audit()
        self.assertEqual([fault.message for fault in auditor.errors + auditor.fixes
                          if FAULTS.get(fault.code.name, "none") not in fault.message], [])
        wanted = count(shapes_of(job, lambda _: True), triangles_of(job))
        found = collections.Counter(entity.dxftype() for entity in modelspace)
        self.assertEqual(found["3DFACE"], wanted["faces"])
        objects = [thing for dataset in job["datasets"] for thing in dataset.get("objects", []) if thing.get("state") != "block"]
        if any(thing.get("codes") for thing in objects):
            self.assertEqual(found["INSERT"], len(objects))
            return
        self.assertEqual((found["POINT"], found["POLYLINE"], found["ARC"]),
                         (wanted["points"], sum(bool(thing.get("stations")) for thing in objects), wanted["arcs"]))
        self.assertEqual(sum(len(entity.vertices) for entity in modelspace.query("POLYLINE")),
                         wanted["line vertices"] + sum(closed_vertices(thing) for thing in objects if "polygon" in thing))


if __name__ == "__main__":
    unittest.main()
