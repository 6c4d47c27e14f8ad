"""What convert writes: bytes, units, layouts, kinds, datasets, reports."""

import json
import math
import os
import unittest

from program import DONE, HEADER, LOSS, MEMORY, OUTPUT, POINTS, ROOT, USAGE, ProgramTest

US_FOOT = 1200 / 3937


class Convert(ProgramTest):
    def convert(self, content, out, *options, name="in.txt", status=DONE):
        self.write(name, content)
        self.check(status, "convert", name, out, *options)
        return self.read(out)

    def test_writes_the_form_of_the_extension(self):
        written = self.convert(POINTS, "out.sim", "--job-name", "Quarry")
        self.assertEqual(written, b"G00,03,Quarry,\r\nA00,\r\nA01,1,A1,100.500,200.250,10.000,\r\n"
                                  b"A01,2,A2,101.000,201.000,11.000,\r\nA99,\r\n")
        self.assertEqual(self.names(), ["in.txt", "out.sim"])

    def test_takes_the_first_variant_of_an_extension_and_says_so(self):
        self.write("in.txt", POINTS)
        answer = self.check(DONE, "convert", "in.txt", "out.sim")
        self.assertRegex(answer.err, r"out\.sim: taken as sima \(63\).*sima-numbers \(66\)")

    def test_forms_go_by_key_and_by_code(self):
        self.write("in.txt", POINTS)
        for form in ("sima-numbers", "66"):
            self.check(DONE, "convert", "in.txt", "out", "--from", "0", "--to", form, "--overwrite")
            self.assertIn(b"A01,1,,100.500", self.read("out"))

    def test_a_job_document_goes_through_unchanged(self):
        job = self.make_job("First", "", "First")
        job["datasets"][1]["objects"] = []
        self.write("a.job.json", json.dumps(job))
        self.check(DONE, "convert", "a.job.json", "b.job.json")
        self.check(DONE, "convert", "b.job.json", "c", "--to", "job")
        self.assertEqual([dataset["name"] for dataset in self.read_json("b.job.json")["datasets"]], ["First", "", "First"])
        self.assertEqual(self.read("c"), self.read("b.job.json"))
        # known by its content too
        self.assertEqual(self.info("c")["format"], {"code": None, "key": "job"})

    def test_units(self):
        feet = "P,1000,2000,300,\n"
        job = json.loads(self.convert(HEADER + feet, "out.job.json", "--units", "us-feet"))
        station = json.dumps(job["datasets"])
        self.assertIn(repr(1000 * US_FOOT)[:10], station)
        rows = [(("--units", "us-feet"), "P,1000.000,2000.000,300.000,"),
                (("--units", "2", "--out-units", "metres"), f"P,{1000 * US_FOOT:.3f},{2000 * US_FOOT:.3f},{300 * US_FOOT:.3f},"),
                (("--units", "feet", "--out-units", "inches"), "P,12000.000,24000.000,3600.000,"),
                (("--out-units", "us-miles", "--decimals", "6"),
                 f"P,{1000 / US_FOOT / 5280:.6f},{2000 / US_FOOT / 5280:.6f},{300 / US_FOOT / 5280:.6f},")]
        for options, line in rows:
            with self.subTest(options):
                written = self.convert(HEADER + feet, "out.txt", "--to", "delimited", "--overwrite", *options)
                self.assertEqual(written.decode(), line + "\r\n")

    def test_options_go_over_what_a_job_document_says(self):
        self.convert(HEADER + "P,1000,2000,300,\n", "a.job.json", "--units", "feet", "--job-name", "Old")
        self.check(DONE, "convert", "a.job.json", "kept.sim")
        self.assertIn(b"G00,03,Old,\r\nA00,\r\nA01,1,P,1000.000,", self.read("kept.sim"))
        self.check(DONE, "convert", "a.job.json", "said.sim", "--units", "metres", "--job-name", "New")
        self.assertIn(b"G00,03,New,\r\nA00,\r\nA01,1,P,304.800,", self.read("said.sim"))

    def test_layouts(self):
        blanks = "7  200.25 100.5   10 \n8 201 101 11\n"
        rows = [(("--layout", "name,east,north,height", "--delimiter", "blank"), "7 200.250 100.500 10.000"),
                (("--layout", "PENZ", "--delimiter", "space", "--out-layout", "north,east,name", "--out-delimiter", ";"),
                 "100.500;200.250;7"),
                (("--layout", "name,east,north,height", "--delimiter", "blank", "--out-delimiter", "tab", "--decimals", "1,2,0"),
                 "7\t200.25\t100.5\t10")]
        for options, line in rows:
            with self.subTest(options):
                written = self.convert(blanks, "out.txt", "--from", "delimited", "--to", "delimited", "--overwrite", *options)
                self.assertEqual(written.decode().split("\r\n")[0], line)

    def test_a_header_tells_its_layout_to_the_next_reader(self):
        self.convert("A;1;2;3\nB;4;5;6\n", "out.txt", "--to", "delimited", "--header", "--layout", "name,north,east,height",
                     "--delimiter", "semicolon", "--from", "delimited")
        self.assertTrue(self.read("out.txt").startswith(b"Header>> Delimiter(;) FileFormat(name,north,east,height) <<\r\n"))
        self.assertEqual(self.info("out.txt")["job"]["datasets"][0]["stations"], 2)

    def test_an_option_goes_over_the_layout_that_came_with_the_file(self):
        written = self.convert(POINTS, "out.txt", "--to", "delimited", "--layout", "name,height")
        self.assertEqual(written, b"A1,10.000\r\nA2,11.000\r\n")

    def test_attribute_types_and_quotes(self):
        typed = HEADER + 'A1,1,2,3,TREE:kind.TEXT="oak"$girth.REAL=1.5\n'
        written = self.convert(typed, "out.txt", "--to", "delimited", "--attribute-types", "--quote")
        self.assertEqual(written, b'A1,1.000,2.000,3.000,TREE:kind.TEXT="oak"$girth.REAL=1.5\r\n')

    def test_geographic_coordinates(self):
        written = self.convert("P,45.5042,7.25,300\n", "out.txt", "--from", "delimited", "--to", "delimited", "--layout",
                               "name,north,east,height", "--coordinates", "geographic", "--units", "feet", "--decimals", "4,4,1")
        self.assertEqual(written, b"P,45.5042,7.2500,300.0\r\n")
        self.convert("P,45.30151,7.15,300\n", "out.job.json", "--from", "delimited", "--layout", "name,north,east,height",
                     "--coordinates", "geographic", "--coords-style", "packed")
        north = self.info("out.job.json")["job"]["datasets"][0]["extent"]["north"][0]
        self.assertTrue(math.isclose(north, 45 + 30 / 60 + 15.1 / 3600, abs_tol=1e-12))

    def test_encodings(self):
        self.convert(HEADER.encode() + b"T\xfcr,1,2,3,\n", "out.sim")
        self.assertIn("A01,1,Tür,".encode(), self.read("out.sim"))
        self.convert(HEADER.encode() + b"\xb9,1,2,3,\n", "out.sim", "--encoding", "CP1250", "--overwrite")
        self.assertIn("A01,1,ą,".encode(), self.read("out.sim"))
        self.convert(HEADER + "Tür,1,2,3,\n", "out.sim", "--write-encoding", "CP1252", "--overwrite")
        self.assertIn(b"A01,1,T\xfcr,", self.read("out.sim"))

    def test_block_references_make_as_many_copies_as_are_allowed(self):
        block = "0 SECTION|2 BLOCKS|0 BLOCK|2 B|10 0|20 0|30 0|0 POINT|0 ENDBLK|0 ENDSEC|"
        groups = block + "0 SECTION|2 ENTITIES|" + 5 * "0 INSERT|2 B|" + "0 ENDSEC|0 EOF"
        self.write("nest.dxf", "".join(f"{line}\n" for group in groups.split("|") for line in group.split(" ")))
        said = self.check(MEMORY, "convert", "nest.dxf", "out.job.json", "--most-copies", "4").err
        self.assertIn("nest.dxf:41: left out: ", said)
        self.check(DONE, "convert", "nest.dxf", "out.job.json", "--most-copies", "5")
        self.check(USAGE, "convert", "nest.dxf", "out.job.json", "--most-copies", "-1")

    def test_codes_of_what_was_not_asked_for_are_no_loss(self):
        self.write("in.txt", HEADER + "A,1,2,3,TREE\nL,1,2,3,WALL\nL,4,5,6,WALL\n")
        self.check(DONE, "convert", "in.txt", "out.txt", "--to", "delimited", "--types", "lines", "--fail-on", "loss")
        self.check(DONE, "convert", "in.txt", "out.job.json", "--types", "points")
        self.assertEqual(self.info("out.job.json")["job"]["codes"], ["TREE"])

    def test_coordinates_of_another_kind_are_told(self):
        self.write("plane.txt", HEADER + "A,5400,4500,3,\n")
        said = self.check(DONE, "convert", "plane.txt", "geo.job.json", "--coordinates", "geographic").err
        self.assertIn("1 stations lie beyond 90 degrees", said)
        said = self.check(DONE, "info", "geo.job.json", "--coordinates", "plane").err
        self.assertIn("its coordinates are geographic, and --coordinates takes the same numbers as plane", said)

    def test_types_keep_the_kinds_that_are_named(self):
        ring = "".join(f"R,{n},{e},1,\n" for n, e in ((0, 0), (0, 5), (5, 5), (0, 0)))
        line = "L,1,1,1,\nL,2,2,2,\n"
        for types, expected in (("points", (2, 0, 0)), ("lines,polygons", (0, 1, 1)), ("POLYGONS", (0, 0, 1))):
            with self.subTest(types):
                self.convert(POINTS + ring + line, "out.job.json", "--types", types, "--overwrite")
                dataset = self.info("out.job.json")["job"]["datasets"][0]
                self.assertEqual((dataset["points"], dataset["polylines"], dataset["polygons"]), expected)

    def test_types_take_a_job_history_or_leave_it(self):
        job = self.make_job("First", "Only history", "Last")
        job["datasets"][1] = {"name": "Only history", "jobHistory": {"tables": [{"title": "Stakeout"}]}}
        self.write("in.job.json", json.dumps(job))
        for types, expected in (("points", [(2, 0), (0, 0), (2, 0)]), ("history", [(0, 0), (0, 1), (0, 0)])):
            with self.subTest(types):
                self.check(DONE, "convert", "in.job.json", "out.job.json", "--types", types, "--overwrite")
                self.assertEqual([(dataset["points"], dataset["history_tables"])
                                  for dataset in self.info("out.job.json")["job"]["datasets"]], expected)
        # a form without it loses it, and nothing else
        answer = self.check(DONE, "convert", "in.job.json", "out.sim")
        self.assertEqual(self.read("out.sim").count(b"A01,"), 4)
        self.assertIn("out.sim: left out: \"Only history\"", answer.err)
        self.check(LOSS, "convert", "in.job.json", "lost.sim", "--fail-on", "loss")

    def test_lists_of_a_stakeout(self):
        example = os.path.join(ROOT, "examples/stakeout.job.json")
        rows = [(("--to", "15", "--layout", "sheet-name,measurement,fill", "--out-units", "us-feet"),
                 b"K1,1,0.000\r\nK1,2,0.000\r\nK2,1,1.050\r\n"),
                (("--to", "gps-list", "--layout", "name,vrms,solution"), b"BASE,0.020,fixed\r\nGATE,0.080,float\r\n"),
                (("--to", "job-history-list", "--types", "history"),
                 b"1,Stakeout,K1,cut{0.242}remark{stone  dug out}\r\n2,Stakeout,K1,cut{0.011}\r\n3,Stakeout,K2,fill{0.320}\r\n")]
        for options, expected in rows:
            with self.subTest(options):
                self.check(DONE, "convert", example, "out.txt", "--overwrite", *options)
                self.assertEqual(self.read("out.txt"), expected)
        answer = self.check_failure(OUTPUT, "convert", example, "none.csv", "--to", "44", "--types", "points")
        self.assertIn("no job history", answer.err)

    def test_replaces_the_input_itself(self):
        self.write("in.txt", POINTS)
        self.check(DONE, "convert", "in.txt", "in.txt", "--to", "delimited", "--overwrite", "--layout", "name,height")
        self.assertEqual(self.read("in.txt"), b"A1,10.000\r\nA2,11.000\r\n")

    def test_writes_behind_a_link(self):
        self.write("in.txt", POINTS)
        self.write("real.sim", "old")
        os.symlink("real.sim", self.path("link.sim"))
        self.check(DONE, "convert", "in.txt", "link.sim", "--overwrite")
        self.assertTrue(os.path.islink(self.path("link.sim")))
        self.assertIn(b"A01,1,A1", self.read("real.sim"))


class Datasets(ProgramTest):
    def job(self, *names):
        self.write("in.job.json", json.dumps(self.make_job(*names)))

    def test_all_go_into_one_file_past_an_empty_one(self):
        job = self.make_job("First", "Empty", "Last")
        job["datasets"][1]["objects"] = []
        self.write("in.job.json", json.dumps(job))
        self.check(DONE, "convert", "in.job.json", "out.sim")
        self.assertEqual(self.read("out.sim").count(b"A01,"), 4)

    def test_each_goes_into_a_file_of_its_own(self):
        self.job("North face", "South")
        os.mkdir(self.path("out"))
        self.check(DONE, "convert", "in.job.json", "out", "--to", "sima", "--per-dataset")
        self.check(DONE, "convert", "in.job.json", "base.sim", "--per-dataset")
        self.assertEqual(self.names(), ["North face.sim", "South.sim", "in.job.json", "out", "out/North face.sim",
                                        "out/South.sim"])
        self.assertEqual(self.read("South.sim").count(b"A01,"), 2)

    def test_two_of_one_name_get_two_files(self):
        self.job("Pit", "Pit", "Pit (2)", "Pit")
        answer = self.check(DONE, "convert", "in.job.json", "base.sim", "--per-dataset")
        self.assertEqual(self.names(), ["Pit (2).sim", "Pit (3).sim", "Pit (4).sim", "Pit.sim", "in.job.json"])
        self.assertIn('two datasets are named "Pit"', answer.err)

    def test_none_moves_if_one_is_in_the_way(self):
        self.job("One", "Two")
        self.write("Two.sim", "stays")
        answer = self.check_failure(7, "convert", "in.job.json", "base.sim", "--per-dataset")
        self.assertIn("Two.sim: the file exists already", answer.err)
        self.check(DONE, "convert", "in.job.json", "base.sim", "--per-dataset", "--overwrite")
        self.assertIn(b"A01,", self.read("Two.sim"))

    def test_a_name_that_no_file_can_have_is_skipped_and_told(self):
        self.job("../evil", "Good")
        answer = self.check(LOSS, "convert", "in.job.json", "base.sim", "--per-dataset", "--report", "r.json")
        self.assertEqual(self.names(), ["Good.sim", "in.job.json", "r.json"])
        self.assertIn("../evil", answer.err)
        self.assertEqual(self.read_json("r.json")["result"], {"code": 3, "name": "bad-dataset-name"})

    def test_a_job_document_takes_them_all(self):
        self.job("One")
        self.check_failure(USAGE, "convert", "in.job.json", "out.job.json", "--per-dataset")


class Report(ProgramTest):
    def test_tells_all(self):
        self.write("in.txt", POINTS + "bad,x,1,1,\n")
        self.check(LOSS, "convert", "in.txt", "out.sim", "--report", "r.json")
        report = self.read_json("r.json")
        self.assertEqual((report["status"], report["files"]), (6, ["out.sim"]))
        self.assertEqual(report["import"],
                         {"file": "in.txt", "format": {"code": 0, "key": "delimited"}, "result": {"code": 5, "name": "partial"}})
        self.assertEqual(report["export"],
                         {"file": "out.sim", "format": {"code": 63, "key": "sima"}, "result": {"code": 13, "name": "ok"}})
        notes = report["notes"]
        self.assertEqual((notes["refused"], notes["left_out"], notes["by_code"]["line.number"]), (1, 1, 1))
        refused = notes["items"][0]
        self.assertEqual({key: refused[key] for key in ("phase", "kind", "code", "file", "line", "offset", "record")},
                         {"phase": "import", "kind": "refused", "code": "line.number", "file": "in.txt", "line": 4,
                          "offset": None, "record": "bad"})
        left_out = notes["items"][1]
        # the place where the file came to lie, not where it was made
        self.assertEqual((left_out["kind"], left_out["code"], left_out["file"], left_out["record"], left_out["line"]),
                         ("left_out", "object.codes", "out.sim", "A1", None))

    def test_is_written_for_a_run_that_failed(self):
        self.write("in.txt", POINTS)
        self.write("out.sim", "stays")
        self.check(7, "convert", "in.txt", "out.sim", "--report", "r.json")
        report = self.read_json("r.json")
        self.assertEqual((report["status"], report["result"], report["files"]), (7, None, []))
        self.assertIn("exists already", report["failure"])

    def test_replaces_reports_alone(self):
        self.write("in.txt", POINTS)
        self.write("r.json", "{}")
        self.check_failure(7, "convert", "in.txt", "out.sim", "--report", "r.json")
        self.check(DONE, "convert", "in.txt", "out.sim", "--report", "r.json", "--overwrite")
        self.check(7, "convert", "in.txt", "out.sim", "--report", "r.json")
        self.assertEqual(self.read_json("r.json")["status"], 7)
        for name in ("in.txt", "./in.txt", "out.sim"):
            self.check_failure(USAGE, "convert", "in.txt", "out.sim", "--overwrite", "--report", name)


if __name__ == "__main__":
    unittest.main()
