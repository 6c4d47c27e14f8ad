"""Has the compiler of a build folder read every source below src/ without making objects: its warnings, cheaply.

usage: syntax_check.py BUILD [JOBS]
"""

import concurrent.futures
import json
import os
import shlex
import subprocess
import sys


def command_of(entry):
    """The compile command without launcher and output, and with -fsyntax-only."""
    words = shlex.split(entry["command"])
    while words and "clang++" not in os.path.basename(words[0]) and "g++" not in os.path.basename(words[0]):
        del words[0]
    place = words.index("-o")
    del words[place:place + 2]
    return words + ["-fsyntax-only"]


def read(entry):
    return subprocess.run(command_of(entry), cwd=entry["directory"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, check=False)


def main():
    build = sys.argv[1]
    jobs = int(sys.argv[2]) if len(sys.argv) > 2 else os.cpu_count()
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        # a test that compiles a source again does so with a precompiled header, which isn't made here
        entries = [entry for entry in json.load(file) if "/src/" in entry["file"] and "cmake_pch" not in entry["command"]]
    if not entries:
        sys.exit("no source below src/ in the list of compile commands")

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for result in pool.map(read, entries):
            if result.returncode != 0:
                failed += 1
                print(result.stdout)
    print(f"{len(entries)} sources read, {failed} with warnings or errors")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
