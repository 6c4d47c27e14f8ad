"""Has the compiler of a build folder read every source below src/ without making objects: its warnings, cheaply.

usage: syntax_check.py BUILD [JOBS]
"""

import concurrent.futures
import json
import os
import shlex
import subprocess
import sys


def words_of(entry):
    """The compile command without launcher."""
    words = shlex.split(entry["command"])
    while words and "clang++" not in os.path.basename(words[0]) and "g++" not in os.path.basename(words[0]):
        del words[0]
    return words


def output_of(entry):
    words = words_of(entry)
    return words[words.index("-o") + 1]


def read(entry):
    words = words_of(entry)
    place = words.index("-o")
    del words[place:place + 2]
    return subprocess.run(words + ["-fsyntax-only"], cwd=entry["directory"], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)


def main():
    build = sys.argv[1]
    jobs = int(sys.argv[2]) if len(sys.argv) > 2 else os.cpu_count()
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        listed = [entry for entry in json.load(file) if output_of(entry).startswith("src/")]
    # the headers that the sources share are read once, and the sources then begin behind them
    headers = [output_of(entry) for entry in listed if "cmake_pch" in entry["file"]]
    if headers and subprocess.run(["ninja", "-C", build, "--quiet", *headers], check=False).returncode != 0:
        sys.exit("the precompiled headers can't be made")
    entries = list({entry["file"]: entry for entry in listed if "cmake_pch" not in entry["file"]}.values())
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
