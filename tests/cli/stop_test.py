"""A stop by signal, while the program reads and while it writes: status 130, nothing left."""

import glob
import os
import signal
import subprocess
import time
import unittest

from program import HEADER, PROGRAM, SECONDS, STOPPED, ProgramTest

LINES = 1000000


def default_signals():
    # a test run in the background may have been told to ignore them
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_DFL)


def catches(pid, number):
    """True once the process has a handler for the signal."""
    with open(f"/proc/{pid}/status", encoding="ascii") as file:
        mask = next(line.split()[1] for line in file if line.startswith("SigCgt:"))
    return int(mask, 16) >> (number - 1) & 1 == 1


class Stop(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.txt", HEADER + "".join(f"{i},{i},{i},1,SPOT\n" for i in range(LINES)))
        self.write("out.sim", "stays")

    def stop(self, number, moment, *arguments):
        """Starts the program, and sends the signal once `moment` of the process id is true."""
        with subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              preexec_fn=default_signals) as process:
            end = time.monotonic() + SECONDS
            while process.poll() is None and not moment(process.pid):
                self.assertLess(time.monotonic(), end)
            process.send_signal(number)
            said = process.communicate(timeout=SECONDS)[1].decode()
        self.assertEqual(process.returncode, STOPPED, said)
        self.assertIn("stopped", said)

    def stop_conversion(self, number, moment):
        self.stop(number, moment, "convert", "in.txt", "out.sim", "--overwrite", "--report", "r.json")
        self.assertEqual(self.names(), ["in.txt", "out.sim", "r.json"])
        self.assertEqual(self.read("out.sim"), b"stays")
        return self.read_json("r.json")

    def is_writing(self, _pid):
        return bool(glob.glob(os.path.join(glob.escape(self.folder), ".alidade-*", "out.sim")))

    def test_while_it_reads(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                report = self.stop_conversion(number, lambda pid, number=number: catches(pid, number))
                self.assertEqual((report["status"], report["export"]["result"]), (STOPPED, None))

    def test_while_an_importer_reads_that_keeps_what_it_has(self):
        points = "".join(f"A01,{i},P{i},1,2,3,\n" for i in range(LINES))
        self.write("in.sim", "G00,03,J,\nA00,\n" + points + "A99,\n")
        self.stop(signal.SIGINT, lambda pid: catches(pid, signal.SIGINT), "info", "in.sim")

    def test_while_it_writes(self):
        report = self.stop_conversion(signal.SIGINT, self.is_writing)
        self.assertEqual((report["status"], report["result"]["name"], report["files"]), (STOPPED, "stopped", []))

    def test_while_it_writes_a_file_that_the_job_is_not_told_of(self):
        self.stop(signal.SIGINT, lambda _pid: glob.glob(os.path.join(glob.escape(self.folder), ".alidade-*", "out.bin")),
                  "convert", "in.txt", "out.bin")
        self.assertEqual(self.names(), ["in.txt", "out.sim"])

    def test_while_it_reads_for_a_picture(self):
        self.stop(signal.SIGINT, lambda pid: catches(pid, signal.SIGINT), "plot", "in.txt", "-o", "out.svg")
        self.assertEqual(self.names(), ["in.txt", "out.sim"])


if __name__ == "__main__":
    unittest.main()
