"""The command line itself: what is refused, what help tells, and that the manual tells the same."""

import os
import pty
import re
import subprocess
import unittest

from program import DONE, POINTS, PROGRAM, ROOT, SECONDS, UNKNOWN, USAGE, ProgramTest

OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")


def manual():
    with open(os.path.join(ROOT, "docs/program.md"), encoding="utf-8") as file:
        return file.read()


class Usage(ProgramTest):
    def test_hints_that_save_a_search(self):
        self.write("in.txt", POINTS)
        self.assertIn("--to cor-lev writes what is read from it", self.check_failure(UNKNOWN, "convert", "in.txt", "out.cor").err)
        said = self.check(DONE, "convert", "in.txt", "out.csv", "--to", "comma-neh", "--header").err
        self.assertIn("out.csv: this form has no header line, and --header adds none", said)

    def test_what_makes_no_sense_is_refused(self):
        self.write("in.txt", POINTS)
        good = ("convert", "in.txt", "out.sim")
        for arguments in ((), ("convert",), ("convert", "in.txt"), ("nonsense",), (*good, "third"), (*good, "--nosuch"),
                          (*good, "--units", "cubits"), (*good, "--units", "7"), (*good, "--units", "0"),
                          (*good, "--out-units", ""), (*good, "--angles", "5"), (*good, "--coordinates", "round"),
                          (*good, "--coords-style", "6"), (*good, "--decimals", "16"), (*good, "--decimals", "3,3"),
                          (*good, "--decimals", "-1"), (*good, "--layout", "name,nowhere"), (*good, "--layout", "name,north,north"), (*good, "--delimiter", "ab"),
                          (*good, "--delimiter", "7"), (*good, "--delimiter", ""), (*good, "--types", "points,dragons"),
                          (*good, "--encoding", "martian"), (*good, "--write-encoding", ""), (*good, "--fail-on", "gain"),
                          ("formats", "--json", "--markdown"), ("info", "in.txt", "--overwrite")):
            with self.subTest(arguments):
                answer = self.run_program(*arguments)
                self.assertEqual((answer.status, answer.out), (USAGE, ""))
                self.assertNotEqual(answer.err, "")
        self.assertEqual(self.names(), ["in.txt"])

    def test_a_wrong_word_is_answered_with_the_right_ones(self):
        said = self.run_program("convert", "a", "b", "--units", "cubits").err
        self.assertIn('"cubits" isn\'t one of metres, us-feet', said)

    def test_a_bar_is_drawn_on_a_terminal_alone(self):
        self.write("in.txt", POINTS)
        bar = "reading ["
        for options, expected in ((("--progress",), True), ((), False)):
            terminal, program_end = pty.openpty()
            subprocess.run([PROGRAM, "convert", "in.txt", "out.sim", "--overwrite", *options], cwd=self.folder,
                           stderr=program_end, timeout=SECONDS, check=True)
            os.close(program_end)
            said = os.read(terminal, 1 << 16).decode()
            os.close(terminal)
            self.assertEqual(bar in said, expected, said)
        self.assertNotIn(bar, self.check(DONE, "convert", "in.txt", "out.sim", "--overwrite", "--progress").err)

    def test_version(self):
        self.assertRegex(self.check(DONE, "--version").out, r"^alidade \d+\.\d+\.\d+\n$")

    def test_the_manual_tells_of_every_option_and_of_no_other(self):
        # what diff takes for one of its files is an option of both under another name
        def options(text):
            return {re.sub("^--[ab]-", "--", option) for option in OPTION.findall(text)}

        helped = set()
        for command in ("convert", "info", "diff", "plot", "formats"):
            answer = self.check(DONE, command, "--help")
            self.assertEqual(answer.err, "")
            helped |= options(answer.out)
        helped |= options(self.check(DONE, "--help").out)
        self.assertGreater(len(helped), 25)
        self.assertEqual(options(manual()), helped)

    def test_the_manual_and_help_tell_of_every_status(self):
        said = self.check(DONE, "convert", "--help").out
        for status in (*range(10), 130):
            self.assertRegex(manual(), rf"(?m)^\| {status} +\|")
            self.assertRegex(said, rf"(?m)(?:^|   ) +{status}  [a-z]")


if __name__ == "__main__":
    unittest.main()
