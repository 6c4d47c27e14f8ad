"""Runs the program under test in a scratch folder. ALIDADE_PROGRAM and ALIDADE_ROOT tell where it and the sources are."""

import copy
import json
import os
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["ALIDADE_PROGRAM"]
ROOT = os.environ["ALIDADE_ROOT"]
QUARRY = os.path.join(ROOT, "examples/quarry.txt")
SECONDS = 120
HEADER = "Header>> Delimiter(,) FileFormat(name,north,east,height,codes) <<\n"
POINTS = HEADER + "A1,100.5,200.25,10,TREE\nA2,101,201,11,\n"

DONE, USAGE, UNREADABLE, UNKNOWN, CONTENT, LOSS, OUTPUT, MEMORY, UNSUPPORTED = 0, 2, 3, 4, 5, 6, 7, 8, 9
STOPPED = 130


class Answer:
    def __init__(self, result):
        self.status = result.returncode
        self.out = result.stdout.decode("utf-8")
        self.err = result.stderr.decode("utf-8")


class ProgramTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content.encode("utf-8") if isinstance(content, str) else content)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def read_json(self, name):
        return json.loads(self.read(name))

    def names(self):
        """Everything below the scratch folder, hidden names too."""
        return sorted(os.path.relpath(os.path.join(folder, name), self.folder)
                      for folder, folders, files in os.walk(self.folder) for name in folders + files)

    def run_program(self, *arguments, **options):
        return Answer(subprocess.run([PROGRAM, *arguments], cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True,
                                     timeout=SECONDS, check=False, **options))

    def check(self, status, *arguments, **options):
        """Runs, and fails with what the program said if the status is another one. Only a data command may use standard output."""
        answer = self.run_program(*arguments, **options)
        self.assertEqual(answer.status, status, f"{arguments}\n{answer.out}\n{answer.err}")
        if arguments[0] in ("convert", "plot") and "--help" not in arguments:
            self.assertEqual(answer.out, "")
        return answer

    def check_failure(self, status, *arguments, **options):
        """The same for a run that has to leave the folder as it was, and has to say why."""
        before = {name: self.read(name) for name in self.names() if os.path.isfile(self.path(name))}
        names = self.names()
        answer = self.check(status, *arguments, **options)
        self.assertEqual(self.names(), names)
        self.assertEqual({name: self.read(name) for name in before}, before)
        self.assertIn("alidade: ", answer.err)
        return answer

    def info(self, *arguments, status=DONE):
        return json.loads(self.check(status, "info", *arguments, "--json").out)

    def make_job(self, *dataset_names):
        """A job document whose datasets each hold the points of POINTS."""
        self.write("points.txt", POINTS)
        self.check(DONE, "convert", "points.txt", "made.job.json", "--overwrite")
        job = self.read_json("made.job.json")
        first = job["datasets"][0]
        job["datasets"] = [copy.deepcopy(first) | {"name": name} for name in dataset_names]
        os.remove(self.path("made.job.json"))
        os.remove(self.path("points.txt"))
        return job
