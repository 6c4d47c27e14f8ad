"""Runs the commands that the documents show, so that what a reader types works.

usage: doc_commands.py ROOT PROGRAM

From README.md and docs/*.md, each block fenced with ```sh is read; lines that start with `alidade ` or `./run ` are run and must
end with exit code 0, the other lines of a block are for the reader. `\\` joins lines. All blocks of one document run in one
scratch folder that holds a copy of examples/, so a command may read what an earlier one wrote. A block fenced with
```sh (no-run: reason) is not run, but told.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

from house import finish

FENCE = re.compile(r"^```sh[ \t]*(?:\((no-run)(?::[ \t]*(.*?))?\))?[ \t]*$\n(.*?)^```[ \t]*$", re.M | re.S)
SECONDS = 60


def documents(root):
    folder = os.path.join(root, "docs")
    names = sorted(name for name in os.listdir(folder) if name.endswith(".md"))
    return ["README.md"] + [f"docs/{name}" for name in names]


def commands(text):
    """(line, command) of each block, and (line, reason) of each block that isn't run."""
    found, skipped = [], []
    for block in FENCE.finditer(text):
        line = text.count("\n", 0, block.start()) + 1
        if block.group(1):
            skipped.append((line, block.group(2)))
            continue
        body = block.group(3).replace("\\\n", " ")
        for command in body.splitlines():
            command = re.sub(r"^\$ ", "", command.strip())
            if command.startswith(("alidade ", "./run ")):
                found.append((line, command))
    return found, skipped


def run(command, folder, program):
    # in bash, so that a document may show pipes and redirections; both commands are the program under test
    script = f'alidade() {{ "{program}" "$@"; }}\nset -euo pipefail\n' + re.sub(r"^\./run ", "alidade ", command)
    return subprocess.run(["bash", "-c", script], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=SECONDS, check=False)


def main():
    root, program = (os.path.abspath(path) for path in sys.argv[1:3])
    faults = []
    ran = 0
    for name in documents(root):
        with open(os.path.join(root, name), encoding="utf-8") as file:
            text = file.read()
        found, skipped = commands(text)
        for line, reason in skipped:
            print(f"{name}:{line}: not run: {reason}")
            if not reason:
                faults.append(f"{name}:{line}: a block that isn't run says why")
        with tempfile.TemporaryDirectory() as scratch:
            shutil.copytree(os.path.join(root, "examples"), os.path.join(scratch, "examples"))
            for line, command in found:
                ran += 1
                try:
                    result = run(command, scratch, program)
                except subprocess.TimeoutExpired:
                    faults.append(f"{name}:{line}: {command}\n    still ran after {SECONDS} s")
                    continue
                if result.returncode != 0:
                    said = result.stderr.decode("utf-8", "replace").strip().replace("\n", "\n    ")
                    faults.append(f"{name}:{line}: {command}\n    exit code {result.returncode}\n    {said}")
    return finish(faults, f"{ran} commands ran")


if __name__ == "__main__":
    sys.exit(main())
