"""The example survey: made by its script, and fit for what the documents do with it."""

import os
import subprocess
import sys
import unittest

from program import DONE, QUARRY, ROOT, ProgramTest


class Quarry(ProgramTest):
    def test_the_script_gives_the_file(self):
        script = os.path.join(ROOT, "tools/make_quarry.py")
        made = subprocess.run([sys.executable, "-B", script], capture_output=True, check=True).stdout
        with open(QUARRY, "rb") as file:
            self.assertEqual(made, file.read())

    def test_it_reads_without_a_loss(self):
        told = self.info(QUARRY)
        dataset = told["job"]["datasets"][0]
        self.assertEqual((told["notes"]["refused"], told["notes"]["changed"], told["notes"]["left_out"]), (0, 0, 0))
        self.assertEqual((dataset["polylines"], dataset["polygons"]), (8, 7))
        self.assertTrue({"CONTROL", "TOE", "CREST", "ROAD", "FENCE", "TREE", "SPOT", "BOREHOLE"} <= set(told["job"]["codes"]))

    def test_it_comes_back_from_a_job_document_line_by_line(self):
        self.check(DONE, "convert", QUARRY, "q.job.json", "--fail-on", "loss")
        self.check(DONE, "convert", "q.job.json", "back.txt", "--to", "delimited", "--header", "--fail-on", "loss")
        with open(QUARRY, "rb") as file:
            self.assertEqual(self.read("back.txt").replace(b"\r\n", b"\n"), file.read())

    def test_its_points_go_out_as_sima(self):
        self.check(DONE, "convert", QUARRY, "quarry.sim")
        told = self.info("quarry.sim")["job"]["datasets"][0]
        self.assertEqual(told["points"], self.info(QUARRY)["job"]["datasets"][0]["points"])

    def test_it_goes_out_as_a_drawing(self):
        job = self.info(QUARRY)["job"]["datasets"][0]
        objects = job["points"] + job["polylines"] + job["polygons"]
        said = self.check(DONE, "convert", QUARRY, "plan.dxf").err
        self.assertIn("plan.dxf: written as dxf (4)", said)
        drawing = self.read("plan.dxf")
        self.assertEqual((drawing.count(b"\r\nBLOCK\r\n"), drawing.count(b"\r\nINSERT\r\n")), (objects, objects))
        self.assertIn(b"\r\nINSERT\r\n8\r\n0\r\n66\r\n1\r\n2\r\nCP1\r\n10\r\n468277.629000\r\n20\r\n5402328.218000\r\n"
                      b"30\r\n349.740000\r\n", drawing)
        self.assertTrue(drawing.endswith(b"0\r\nENDSEC\r\n0\r\nEOF\r\n"))

    def test_the_extension_makes_a_drawing_binary(self):
        said = self.check(DONE, "convert", QUARRY, "plan.dxb").err
        self.assertIn("the binary form begins with no mark", said)
        self.assertTrue(self.read("plan.dxb").startswith(b"\0\0\0\0SECTION\0"))


if __name__ == "__main__":
    unittest.main()
