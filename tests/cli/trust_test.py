"""What stays whole and whose it stays: files that lie in the way, modes and links, names that would drive a terminal."""

import json
import os
import pty
import subprocess
import unittest

from program import DONE, HEADER, LOSS, OUTPUT, POINTS, PROGRAM, SECONDS, USAGE, ProgramTest


class Trust(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.txt", POINTS)

    def make_job(self, *names):
        return {"alidade": "job", "datasets": [
            {"name": name, "objects": [{"point": f"P{i}", "north": i, "east": 2, "height": 3}]} for i, name in enumerate(names)]}

    def test_a_report_is_written_through_nothing_that_lies_there(self):
        self.write("victim", "precious")
        os.symlink("victim", self.path("r.json.part"))
        self.check(DONE, "convert", "in.txt", "out.job.json", "--report", "r.json")
        self.assertEqual(self.read("victim"), b"precious")
        self.assertTrue(os.path.islink(self.path("r.json.part")))
        self.assertEqual(self.read_json("r.json")["files"], ["out.job.json"])
        # a link that was named is followed, and stays one
        os.symlink("r.json", self.path("link.json"))
        self.check(DONE, "convert", "in.txt", "two.job.json", "--report", "link.json")
        self.assertTrue(os.path.islink(self.path("link.json")))
        self.assertEqual(self.read_json("r.json")["files"], ["two.job.json"])

    def test_a_report_is_no_file_of_the_output(self):
        self.write("job.job.json", json.dumps(self.make_job("A", "B")))
        os.link(self.path("in.txt"), self.path("same.txt"))
        for arguments in (("in.txt", "pair", "--to", "cor-lev", "--report", "pair.cor"),
                          ("in.txt", "pair", "--to", "cor-lev", "--report", "./pair.lev"),
                          ("job.job.json", "a.sim", "--per-dataset", "--report", "A.sim"),
                          ("in.txt", "out.sim", "--overwrite", "--report", "same.txt")):
            before = self.names()
            self.check(USAGE, "convert", *arguments)
            self.assertEqual([name for name in self.names() if not name.endswith((".cor", ".lev", "A.sim"))],
                             [name for name in before])
            for name in ("pair.cor", "pair.lev", "A.sim"):
                if os.path.exists(self.path(name)):
                    os.remove(self.path(name))
            self.assertEqual(self.read("in.txt").decode(), POINTS)

    def test_a_replaced_file_keeps_its_mode_and_a_read_only_one_stays(self):
        self.write("out.job.json", "{}")
        os.chmod(self.path("out.job.json"), 0o640)
        self.check(DONE, "convert", "in.txt", "out.job.json", "--overwrite")
        self.assertEqual(os.stat(self.path("out.job.json")).st_mode & 0o777, 0o640)
        os.chmod(self.path("out.job.json"), 0o440)
        before = self.read("out.job.json")
        self.assertIn("is read-only", self.check(OUTPUT, "convert", "in.txt", "out.job.json", "--overwrite").err)
        self.assertEqual(self.read("out.job.json"), before)

    def test_many_datasets_of_one_name(self):
        self.write("job.job.json", json.dumps(self.make_job(*["A"] * 300, "A (2)")))
        answer = self.check(DONE, "convert", "job.job.json", "x.sim", "--per-dataset", "-q")
        self.assertEqual(answer.err.count("goes out as"), 1, answer.err[:500])
        self.assertIn('"A (3)"; 298 more get such names', answer.err)
        self.assertEqual(len([name for name in self.names() if name.endswith(".sim")]), 301)

    def test_names_drive_no_terminal_and_forge_no_line(self):
        evil = "E\u001b[2J\u009b1m\u202eX\u2028Y\nDataset \"forged\""
        self.write("job.job.json", json.dumps(self.make_job(evil)))
        shown = self.on_terminal("info", "job.job.json") + self.on_terminal("diff", "job.job.json", "job.job.json")
        shown += self.on_terminal("convert", "job.job.json", "no\u001b[1mwhere/x.sim", "--per-dataset")
        for sign in ("\u001b", "\u009b", "\u202e", "\u2028"):
            self.assertNotIn(sign, shown)
        self.assertNotRegex(shown, r'(?m)^Dataset "forged')
        self.assertIn("\\x1B[2J\\x9B1m\\u202EX\\u2028Y\\x0ADataset", shown)

    def on_terminal(self, *arguments):
        terminal, program_end = pty.openpty()
        with subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, stdin=subprocess.DEVNULL, stdout=program_end,
                              stderr=program_end) as process:
            os.close(program_end)
            said = b""
            while True:
                try:
                    piece = os.read(terminal, 1 << 16)
                except OSError:
                    break
                if not piece:
                    break
                said += piece
            process.wait(SECONDS)
        os.close(terminal)
        return said.decode()


if __name__ == "__main__":
    unittest.main()
