"""Each way to fail: its status, its words, and a folder that stays as it was."""

import json
import os
import resource
import stat
import subprocess
import unittest

from program import (CONTENT, DONE, HEADER, LOSS, MEMORY, OUTPUT, POINTS, PROGRAM, QUARRY, SECONDS, UNREADABLE,
                     UNSUPPORTED, ProgramTest)


class Failures(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.txt", POINTS)

    def test_an_input_that_cannot_be_read(self):
        os.mkdir(self.path("folder.txt"))
        for name, words in (("missing.txt", "there is no such file"), ("folder.txt", "can't be opened")):
            self.assertIn(f"{name}: {words}", self.check_failure(UNREADABLE, "convert", name, "out.sim").err)
            self.assertIn(f"{name}: {words}", self.check_failure(UNREADABLE, "info", name).err)

    def test_content_that_is_not_of_the_form(self):
        self.write("empty.txt", HEADER)
        self.write("half.job.json", json.dumps(self.make_job("One")).replace('"settings"', '"setings"', 1))
        self.write("cut.sim", "G00,03,J,\r\nA00,\r\nA01,2,B,east,2,3,\r\nA99,\r\n")
        self.write("none.sim", "")
        self.write("in.txt", POINTS)
        for name, options, words in (("in.txt", ("--from", "sima"), 'in.txt:1: refused: the first line isn\'t a "G00" line'),
                                     ("empty.txt", (), "holds nothing that could be used"),
                                     ("half.job.json", (), "/setings"),
                                     ("cut.sim", (), 'cut.sim:3: refused: its north "east" can\'t be read (line.number)'),
                                     ("none.sim", ("--from", "sima"), "none.sim: the file is empty")):
            with self.subTest(name):
                answer = self.check_failure(CONTENT, "convert", name, "out.job.json", *options)
                self.assertIn(words, answer.err)

    def test_a_refused_line_makes_the_result_partial(self):
        self.write("bad.txt", HEADER + "A,1,2,3,\nB,abc,2,3,\nC,1,2\nD,4,5,6,\n")
        answer = self.check(LOSS, "convert", "bad.txt", "out.sim")
        self.assertIn('bad.txt:3: refused: its north "abc" can\'t be read (line.number)\n', answer.err)
        self.assertIn("bad.txt:4: refused: it has 3 fields where the layout has 5 (line.field-count)\n", answer.err)
        self.assertEqual(self.read("out.sim").count(b"A01,"), 2)
        self.assertEqual(self.check(LOSS, "info", "bad.txt").out.count("Stations     2"), 1)

    def test_what_stands_ahead_of_a_bad_record_is_written(self):
        self.write("cut.sim", "G00,03,J,\r\nA00,\r\nA01,1,A,1,2,3,\r\nA01,2,B,east,2,3,\r\nA01,3,C,1,2,3,\r\nA99,\r\n")
        answer = self.check(LOSS, "convert", "cut.sim", "out.sim", "--report", "report.json")
        self.assertIn("cut.sim was read in part: reading ended at line 4", answer.err)
        self.assertEqual(self.read("out.sim").count(b"A01,"), 1)
        self.assertEqual(self.read_json("report.json")["import"]["result"]["name"], "bad-content")
        self.assertIn("Points       1", self.check(LOSS, "info", "cut.sim").out)
        self.check_failure(LOSS, "convert", "cut.sim", "other.sim", "--fail-on", "loss")

    def test_a_record_that_is_lost_makes_the_result_partial(self):
        self.write("cut.txt", "P\n1\n2\n3\nC\nQ\n4\n")
        answer = self.check(LOSS, "convert", "cut.txt", "out.sim", "--from", "five-lines")
        self.assertIn("cut.txt was read, but not all of it", answer.err)
        self.assertEqual(self.read("out.sim").count(b"A01,"), 1)

    def test_a_file_without_a_record(self):
        self.write("words.txt", "hello world\nfoo\n")
        for form in ("block-fgh", "columns-05"):
            answer = self.check_failure(CONTENT, "convert", "words.txt", "out.sim", "--from", form)
            self.assertIn("words.txt holds nothing that could be used", answer.err)
        self.write("pair.cor", " A                         1.0000        2.0000\n")
        self.assertIn("pair.cor: a file that belongs to it can't be opened",
                      self.check_failure(UNREADABLE, "convert", "pair.cor", "out.sim").err)

    def test_nothing_out_of_a_file_drives_the_terminal(self):
        self.write("bad.csv", "P\x1b[31m\0Q,1,2,3\n")
        said = self.check_failure(CONTENT, "convert", "bad.csv", "out.sim", "--from", "comma-neh").err
        self.assertIn('bad.csv:1: refused: "P\\x1B[31m\\x00Q" can\'t name a point (line.name)\n', said)

    def test_many_notes_are_counted(self):
        self.write("bad.txt", HEADER + "A,1,2,3,\n" + "B,x,2,3,\n" * 30 + "C,1\n" * 5)
        said = self.check(LOSS, "info", "bad.txt").err
        self.assertEqual(said.count(": refused: "), 20)
        self.assertIn("and 15 more: 5 line.field-count, 10 line.number\n", said)

    def test_a_forbidden_loss(self):
        self.write("bad.txt", HEADER + "A,1,2,3,\nB,abc,2,3,\n")
        self.check_failure(LOSS, "convert", "bad.txt", "out.job.json", "--fail-on", "loss")
        # the point's code has no place in this form
        self.check_failure(LOSS, "convert", "in.txt", "out.sim", "--fail-on", "loss")
        self.check(DONE, "convert", "in.txt", "out.job.json", "--fail-on", "loss")

    def test_an_output_that_is_in_the_way(self):
        self.write("out.sim", "stays")
        os.mkdir(self.path("folder.sim"))
        for out, options, words in (("out.sim", (), "--overwrite replaces it"),
                                    ("folder.sim", ("--overwrite",), "isn't a plain file"),
                                    ("missing/out.sim", (), "missing/: there is no such folder"),
                                    ("in.txt/out.sim", (), "there is no such folder"),
                                    ("other.sim", ("--report", "missing/r.json"), "there is no such folder")):
            with self.subTest(out):
                self.assertIn(words, self.check_failure(OUTPUT, "convert", "in.txt", out, *options).err)

    def test_a_pipe_is_not_replaced(self):
        # as a device wouldn't be; of its own, so that a fault here harms nothing outside the scratch folder
        os.mkfifo(self.path("pipe"))
        os.symlink("pipe", self.path("link.sim"))
        for out in ("pipe", "link.sim"):
            self.check_failure(OUTPUT, "convert", "in.txt", out, "--to", "sima", "--overwrite")
            self.assertTrue(stat.S_ISFIFO(os.stat(self.path(out)).st_mode))

    def test_a_full_disk(self):
        def small_files():
            resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))

        self.write("out.sim", "stays")
        for out in ("out.sim", "out.job.json"):
            self.check_failure(OUTPUT, "convert", QUARRY, out, "--overwrite", preexec_fn=small_files)
        self.check_failure(OUTPUT, "plot", QUARRY, "-o", "out.svg", preexec_fn=small_files)

    def test_data_that_nobody_takes(self):
        with open("/dev/full", "wb") as full:
            for arguments in (("info", "in.txt"), ("formats",), ("--help",)):
                result = subprocess.run([PROGRAM, *arguments], cwd=self.folder, stdout=full, stderr=subprocess.DEVNULL,
                                        timeout=SECONDS, check=False)
                self.assertEqual(result.returncode, OUTPUT, arguments)

    def test_no_memory(self):
        def little_memory():
            resource.setrlimit(resource.RLIMIT_AS, (90 << 20, 90 << 20))

        self.write("big.txt", HEADER + "".join(f"{i},{i},{i},1,\n" for i in range(700000)))
        self.check_failure(MEMORY, "convert", "big.txt", "out.sim", preexec_fn=little_memory)

    def test_a_form_that_is_not_built(self):
        rows = json.loads(self.check(DONE, "formats", "--json").out)
        missing = {row["direction"]: row for row in rows if not row["built"]}
        if not missing:
            self.skipTest("every form is built")
        for direction, option in (("import", "--from"), ("export", "--to")):
            if direction in missing:
                answer = self.check_failure(UNSUPPORTED, "convert", "in.txt", "out", option, missing[direction]["key"],
                                            *(("--to", "job") if option == "--from" else ()))
                self.assertIn(missing[direction]["key"], answer.err)

    def test_nothing_of_the_kinds_asked_for(self):
        self.assertIn("--types", self.check_failure(OUTPUT, "convert", "in.txt", "out.sim", "--types", "polygons").err)


if __name__ == "__main__":
    unittest.main()
