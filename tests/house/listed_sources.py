"""Every source below src/, tests/, fuzz/ and bench/ is compiled by somebody: a file that no CMake line names is found here.

usage: listed_sources.py ROOT BUILD
"""

import json
import os
import sys

from house import finish, project_files


def main():
    root, build = (os.path.realpath(path) for path in sys.argv[1:3])
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        compiled = {os.path.relpath(os.path.realpath(os.path.join(entry["directory"], entry["file"])), root)
                    for entry in json.load(file)}

    sources = [name for name in project_files(root, (".cpp",)) if name.startswith(("src/", "tests/", "fuzz/", "bench/"))]
    faults = [f"no CMake line names {name}" for name in sources if name not in compiled]
    return finish(faults, f"{len(sources)} sources are compiled")


if __name__ == "__main__":
    sys.exit(main())
