"""Forms of several files: all of them get to their place, or none."""

import os
import unittest

from program import DONE, OUTPUT, POINTS, UNREADABLE, ProgramTest


class Families(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.txt", POINTS)

    def test_both_files_of_a_pair_go_out_and_come_in(self):
        said = self.check(DONE, "convert", "in.txt", "out", "--to", "cor-lev").err
        self.assertIn("out.cor: written as cor-lev (41)", said)
        self.assertIn("out.lev: written as cor-lev (41)", said)
        self.assertEqual(self.names(), ["in.txt", "out.cor", "out.lev"])
        for name in ("out.cor", "out.lev"):
            self.check(DONE, "convert", name, "back.txt", "--to", "delimited", "--overwrite")
            self.assertEqual(self.read("back.txt"), b"A1,100.500,200.250,10.000,\r\nA2,101.000,201.000,11.000,\r\n")

    def test_a_pair_without_one_of_its_files(self):
        self.check(DONE, "convert", "in.txt", "out", "--to", "cor-lev")
        os.remove(self.path("out.lev"))
        said = self.check_failure(UNREADABLE, "convert", "out.cor", "back.txt", "--to", "delimited").err
        self.assertIn("out.lev: refused: this file of the pair can't be opened", said)

    def test_a_file_in_the_way_keeps_both_out(self):
        self.write("out.lev", "stays")
        said = self.check_failure(OUTPUT, "convert", "in.txt", "out", "--to", "cor-lev").err
        self.assertIn("out.lev: the file exists already", said)
        self.check(DONE, "convert", "in.txt", "out", "--to", "cor-lev", "--overwrite")
        self.assertEqual(self.names(), ["in.txt", "out.cor", "out.lev"])


if __name__ == "__main__":
    unittest.main()
