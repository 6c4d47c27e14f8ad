"""What info tells."""

import json
import unittest

from program import CONTENT, DONE, HEADER, LOSS, POINTS, ProgramTest


class Info(ProgramTest):
    def test_json(self):
        ring = "".join(f"R,{n},{e},{h},HOUSE\n" for n, e, h in ((0, 0, 1), (0, 5, 2), (-5, 5, 3), (0, 0, 1)))
        self.write("in.txt", POINTS + ring + "L,1,1,-4,EDGE\nL,2,2,2,EDGE\n")
        told = self.info("in.txt")
        self.assertEqual(told["file"], "in.txt")
        self.assertEqual(told["format"], {"code": 0, "key": "delimited"})
        self.assertEqual(told["result"], {"code": 13, "name": "ok"})
        self.assertEqual((told["job"]["units"], told["job"]["coordinates"]), ("metres", "plane"))
        self.assertEqual((told["job"]["codes"], told["job"]["layers"]), (["TREE", "HOUSE", "EDGE"], []))
        self.assertEqual(told["job"]["datasets"], [{
            "name": "Import dataset", "elements": 4, "points": 2, "polylines": 1, "polygons": 1, "arcs": 0,
            "composites": 0, "in_blocks": 0, "surfaces": 0, "alignments": 0, "stations": 8, "history_tables": 0,
            "extent": {"north": [-5.0, 101.0], "east": [0.0, 201.0], "height": [-4.0, 11.0]}}])
        self.assertEqual({key: told["notes"][key] for key in ("refused", "changed", "left_out", "items")},
                         {"refused": 0, "changed": 0, "left_out": 0, "items": []})

    def test_json_is_in_metres_and_text_in_the_units(self):
        self.write("in.txt", HEADER + "A,100,200,10,\n")
        extent = self.info("in.txt", "--units", "feet")["job"]["datasets"][0]["extent"]
        self.assertAlmostEqual(extent["north"][0], 30.48, 12)
        self.assertIn("100.000 to 100.000 feet", self.check(DONE, "info", "in.txt", "--units", "feet").out)
        self.check(DONE, "convert", "in.txt", "in.job.json")
        self.assertEqual(self.info("in.job.json", "--units", "us-feet")["job"]["units"], "us-feet")

    def test_what_a_block_is_made_of_stays_out_of_lists(self):
        job = self.make_job("A")
        job["datasets"][0]["objects"] = [{"point": "P", "north": 1, "east": 2, "height": 3, "state": "block"},
                                         {"point": "Q", "north": 4, "east": 5, "height": 6}]
        self.write("in.job.json", json.dumps(job))
        told = self.info("in.job.json")["job"]["datasets"][0]
        self.assertEqual((told["elements"], told["in_blocks"], told["points"], told["extent"]["north"]), (2, 1, 1, [4.0, 4.0]))
        done = self.check(DONE, "convert", "in.job.json", "out.txt", "--to", "delimited")
        self.assertIn("job.blocks", done.err)
        self.assertNotIn(b"P,", self.read("out.txt"))
        self.check(DONE, "convert", "in.job.json", "out.job.json")
        self.assertIn(b'"block"', self.read("out.job.json"))

    def test_what_has_no_place_has_no_extent(self):
        job = self.make_job("Two", "Empty", "One")
        for station in self.stations(job["datasets"][0]):
            station.pop("height", None)
        job["datasets"][1]["objects"] = []
        heights = self.stations(job["datasets"][2])
        self.assertEqual(len(heights), 2, "the document's form has changed")
        heights[0].pop("height", None)
        self.write("in.job.json", json.dumps(job))
        told = self.info("in.job.json")
        self.assertEqual(told["format"], {"code": None, "key": "job"})
        extents = [dataset["extent"] for dataset in told["job"]["datasets"]]
        self.assertEqual((extents[0]["height"], extents[0]["north"]), (None, [100.5, 101.0]))
        self.assertIsNone(extents[1])
        self.assertEqual(extents[2]["height"], [11.0, 11.0])

    def stations(self, part):
        """Everything in a part of a job document that has a north."""
        found = [part] if isinstance(part, dict) and "north" in part else []
        values = part.values() if isinstance(part, dict) else part if isinstance(part, list) else ()
        return found + [station for value in values for station in self.stations(value)]

    def test_degrees(self):
        self.write("in.txt", "102.0793929 13.82877942 45\n102.0798776 13.82880957 46\n")
        options = ("--from", "delimited", "--layout", "east,north,height", "--delimiter", "blank", "--coordinates", "geographic")
        told = self.info("in.txt", *options)
        self.assertEqual(told["job"]["coordinates"], "geographic")
        self.assertEqual(told["job"]["datasets"][0]["extent"]["east"], [102.0793929, 102.0798776])
        self.assertIn("13.82877942 to 13.82880957 degrees", self.check(DONE, "info", "in.txt", *options).out)

    def test_a_bad_file_still_tells_what_it_gave(self):
        self.write("part.txt", HEADER + "A,1,2,3,\nB,x,2,3,\n")
        told = self.info("part.txt", status=LOSS)
        self.assertEqual((told["result"]["name"], told["job"]["datasets"][0]["points"]), ("partial", 1))
        self.assertEqual((told["notes"]["refused"], told["notes"]["items"][0]["line"]), (1, 3))
        self.write("bad.txt", HEADER + "B,x,2,3,\n")
        self.assertEqual(self.info("bad.txt", status=CONTENT)["result"]["name"], "bad-content")


if __name__ == "__main__":
    unittest.main()
