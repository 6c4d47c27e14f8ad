"""Survey files from the field, which lie beside the project and not in it: ALIDADE_CORPUS, or ../shared/corpus."""

import os
import sys
import unittest
import xml.etree.ElementTree as ET

from program import CONTENT, DONE, LOSS, ROOT, ProgramTest

CORPUS = os.path.join(os.environ.get("ALIDADE_CORPUS") or os.path.join(ROOT, "../shared/corpus"), "survey-text")
DRAWINGS = os.path.join(os.path.dirname(CORPUS), "dxf")

# file, options, points
FILES = [
    ("bezi-flattri-pnezd.asc", (), 7),
    ("bezi-samepnts-pnezd.asc", (), 8),
    ("ddbim-xyz-grid.txt", ("--layout", "east,north,height", "--delimiter", "blank"), 2040),
    ("trails-points-space.txt", ("--layout", "name,east,north,height,codes", "--delimiter", "blank"), 446),
    ("trails-latlonh.txt",
     ("--layout", "east,north,height", "--delimiter", "blank", "--coordinates", "geographic"), 8),
]


@unittest.skipUnless(os.path.isdir(CORPUS), f"there is no folder {CORPUS}")
class Corpus(ProgramTest):
    def test_every_point_comes_in_and_goes_out(self):
        for name, options, points in FILES:
            with self.subTest(name):
                told = self.info(os.path.join(CORPUS, name), *options)
                self.assertEqual(told["job"]["datasets"][0]["points"], points)
                self.assertEqual((told["result"]["name"], told["notes"]["refused"]), ("ok", 0))
                self.check(DONE, "convert", os.path.join(CORPUS, name), "out.txt", "--to", "delimited", "--overwrite", *options)
                self.assertEqual(self.read("out.txt").count(b"\n"), points)

    def test_without_its_layout_every_line_is_refused_and_a_way_is_told(self):
        for name, options, lines in FILES[2:]:
            with self.subTest(name):
                path = os.path.join(CORPUS, name)
                told = self.info(path, status=CONTENT)
                self.assertEqual(told["notes"]["refused"], lines)
                named = [item["line"] for item in told["notes"]["items"]]
                self.assertEqual(named, list(range(1, min(lines, 1000) + 1)))
                self.assertIn("--delimiter blank", self.check(CONTENT, "info", path).err)


@unittest.skipUnless(os.path.isdir(DRAWINGS), f"there is no folder {DRAWINGS}")
class Drawings(ProgramTest):
    def test_every_drawing_that_can_be_read_has_a_picture(self):
        drawn = 0
        for name in sorted(name for name in os.listdir(DRAWINGS) if name.endswith(".dxf")):
            with self.subTest(name):
                answer = self.run_program("plot", os.path.join(DRAWINGS, name), "-o", "out.svg", "--overwrite")
                self.assertIn(answer.status, (DONE, LOSS, CONTENT), answer.err)
                if answer.status != CONTENT:
                    content = self.read("out.svg")
                    ET.fromstring(content)
                    self.assertLess(len(content), 5000000)
                    drawn += 1
        self.assertGreater(drawn, 50)


if __name__ == "__main__":
    for folder in (CORPUS, DRAWINGS):
        if not os.path.isdir(folder):
            print(f"skipped: there is no folder {folder}", file=sys.stderr)
    unittest.main()
