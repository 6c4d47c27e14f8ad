"""alidade diff: any two files of any forms."""

import json
import unittest

from program import CONTENT, DONE, HEADER, LOSS, POINTS, UNREADABLE, USAGE, ProgramTest


class DiffTest(ProgramTest):
    def test_tells_what_was_added_lost_moved_and_changed(self):
        self.write("a.txt", HEADER + "A1,100,200,10,TREE\nA2,101,201,11,\nA3,1,2,3,\n")
        self.write("b.txt", HEADER + "A1,100.25,200,10,TREE\nA2,101,201,11,WALL\nA4,7,8,9,\n")
        answer = self.check(LOSS, "diff", "a.txt", "b.txt")
        self.assertEqual(answer.out.splitlines(), [
            'added    code "WALL"',
            'moved    point "A1" at 100.0000 200.0000: north 0.2500, east 0.0000, height 0.0000',
            'changed  point "A2" at 101.0000 201.0000: codes "" became "WALL"',
            'gone     point "A3" at 1.0000 2.0000',
            'added    point "A4" at 7.0000 8.0000'])
        self.assertIn("a.txt and b.txt: 2 added, 1 changed, 1 gone, 1 moved", answer.err)
        found = json.loads(self.check(LOSS, "diff", "a.txt", "b.txt", "--json", "-q").out)
        self.assertEqual(found["count"], 5)
        self.assertEqual(found["differences"][1], {
            "kind": "changed", "thing": "point", "dataset": "Import dataset", "name": "A1", "place": [100.0, 200.0],
            "property": "north", "first": "100", "second": "100.25"})
        self.check(DONE, "diff", "b.txt", "b.txt")
        self.assertEqual(json.loads(self.check(DONE, "diff", "b.txt", "b.txt", "--json").out)["differences"], [])

    def test_forms_and_units_may_differ(self):
        self.write("a.txt", HEADER + "A1,100,200,10,\n")
        self.write("feet.txt", HEADER + "A1,328.08399,656.16798,32.8084,\n")
        self.write("a.sim", "G00,03,job,\r\nA00,\r\nA01,1,A1,100.0004,200,10,\r\nA99,\r\n")
        self.check(DONE, "diff", "a.txt", "a.sim")
        self.check(LOSS, "diff", "a.txt", "a.sim", "--tolerance", "0")
        self.check(DONE, "diff", "a.txt", "feet.txt", "--b-units", "feet")
        self.check(LOSS, "diff", "a.txt", "feet.txt")
        self.write("bare.txt", "200;100;10;A1\n")
        self.check(DONE, "diff", "a.txt", "bare.txt", "--b-layout", "east,north,height,name", "--b-delimiter", "semicolon")

    def test_names_forge_no_line(self):
        self.write("a.job.json", json.dumps({"alidade": "job", "datasets": []}))
        self.write("b.job.json", json.dumps({"alidade": "job", "datasets": [
            {"name": "D", "objects": [{"point": "P\u001b[2J", "north": 1, "east": 2, "height": 3}]}]}))
        answer = self.run_program("diff", "a.job.json", "b.job.json")
        self.assertEqual(answer.status, LOSS, answer.err)
        self.assertNotIn("\x1b", answer.out)

    def test_what_cant_be_compared_says_so(self):
        self.write("a.txt", POINTS)
        self.write("bad.txt", HEADER + "A1,abc,200,10,\n")
        self.check(UNREADABLE, "diff", "a.txt", "none.txt")
        self.check(CONTENT, "diff", "a.txt", "bad.txt")
        self.check(USAGE, "diff", "a.txt", "a.txt", "--b-coordinates", "geographic")
        self.check(USAGE, "diff", "a.txt")


if __name__ == "__main__":
    unittest.main()
