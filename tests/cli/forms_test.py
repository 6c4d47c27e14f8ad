"""How the program tells the form of a file, and what it says of forms."""

import json
import os
import unittest

from program import DONE, POINTS, ROOT, UNKNOWN, ProgramTest

SIMA = "G00,03,J,\r\nA00,\r\nA01,1,%s,1,2,3,\r\nA99,\r\n"


class Input(ProgramTest):
    def key(self, name, *options):
        return self.info(name, *options)["format"]["key"]

    def test_content_decides(self):
        self.write("named.sim", SIMA % "P")
        self.write("numbers.sim", SIMA % "")
        self.write("named.txt", SIMA % "P")
        self.write("header.xyz", POINTS)
        self.write("plain.csv", "A,1.5,2.5,3,X\nB,2.5,3.5,4,X\n")
        self.assertEqual([self.key(name) for name in ("named.sim", "numbers.sim", "named.txt", "header.xyz", "plain.csv")],
                         ["sima", "sima-numbers", "sima", "delimited", "delimited"])
        self.assertEqual(self.key("plain.csv", "--from", "35"), "delimited-35")

    def test_a_job_document_is_known_by_content_and_by_name(self):
        self.write("doc.json", json.dumps(self.make_job("One"), indent=1))
        self.assertEqual(self.key("doc.json"), "job")
        self.write("broken.JOB.JSON", "nothing")
        self.assertIn("form job", self.check(5, "info", "broken.JOB.JSON").err)

    def test_nothing_is_known(self):
        self.write("strange.xyz", "some words\n")
        self.assertIn("neither its content nor its extension", self.check_failure(UNKNOWN, "info", "strange.xyz").err)
        self.write("in.txt", POINTS)
        for option in ("--from", "--to"):
            self.assertIn(f"{option} nosuch", self.check_failure(UNKNOWN, "convert", "in.txt", "out", option, "nosuch").err)

    def test_several_fit(self):
        # one line of words: the content speaks for none of the forms of this extension
        self.write("words.txt", "some words\n")
        answer = self.check_failure(UNKNOWN, "convert", "words.txt", "out.job.json")
        self.assertIn("words.txt: several forms fit this file by its extension:", answer.err)
        self.assertRegex(answer.err, r"\n  .*columns-001 \(7\)")
        self.assertIn("--from", answer.err)

    def test_a_layout_speaks_for_delimited_text(self):
        self.write("points.txt", "1 2 3\n4 5 6\n")
        self.assertEqual(self.key("points.txt", "--layout", "north,east,height", "--delimiter", "blank"), "delimited")

    def test_lines_without_a_layout_are_told_apart(self):
        self.write("points.txt", "1.5 2.5 3\n4.5 5.5 6\n")
        said = self.check(5, "info", "points.txt").err
        self.assertIn("points.txt:1: refused: it has 1 fields where the layout has 5", said)
        self.assertIn("--delimiter blank --layout north,east,height", said)
        self.write("points.txt", "A;1;2;3;X\nB;4;5;6;Y\n")
        self.assertIn("--delimiter semicolon --layout name,north,east,height,codes", self.check(5, "info", "points.txt").err)


class Output(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.txt", POINTS)

    def test_the_extension_decides(self):
        self.check(DONE, "convert", "in.txt", "a.b.JOB.json")
        self.assertEqual(self.info("a.b.JOB.json")["format"]["key"], "job")
        for name, words in (("out", "without an extension"), ("out.nosuch", "the extension nosuch"), (".sim/..", "extension")):
            with self.subTest(name):
                self.assertIn(words, self.check_failure(UNKNOWN, "convert", "in.txt", name).err)

    def test_several_fit(self):
        said = self.check_failure(UNKNOWN, "convert", "in.txt", "out.txt").err
        self.assertIn("several forms have the extension txt", said)
        self.assertRegex(said, r"\n  delimited \(0\): ")
        self.assertIn("--to", said)


class Formats(ProgramTest):
    def test_the_document_is_up_to_date(self):
        with open(os.path.join(ROOT, "docs/formats.md"), encoding="utf-8") as file:
            document = file.read()
        self.assertEqual(self.check(DONE, "formats", "--markdown").out, document, "docs/formats.md is out of date")

    def test_all_tell_of_the_same_forms(self):
        rows = json.loads(self.check(DONE, "formats", "--json").out)
        listed = [line.split()[:2] for line in self.check(DONE, "formats").out.splitlines() if line[:4].strip().isdigit()]
        self.assertEqual(listed, [[str(row["code"]), row["key"]] for row in rows])
        self.assertGreater(len(rows), 100)


if __name__ == "__main__":
    unittest.main()
