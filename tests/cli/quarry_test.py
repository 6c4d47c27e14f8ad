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


if __name__ == "__main__":
    unittest.main()
