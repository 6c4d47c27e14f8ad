"""Looks for words that don't belong into the project's text: places on a developer's disk, papers the reader doesn't have,
hosts of package registries. usage: wording.py ROOT
"""

import os
import re
import sys

from house import finish, project_files, read_text

# written so that no pattern matches its own line
PATTERNS = [
    ("a place on somebody's disk", re.compile(r"(?<![\w.])/(?:w[o]rk|h[o]me|Us[e]rs)/\w|/tmp/b[a]sh_jobs")),
    ("a paper the reader doesn't have", re.compile(
        r"\bs[p]ec\.md|\bdes[i]gn\.md|\bth[e] specification\b|\b[P]art \d+(?:\.\d+)+|\b[P]arts? \d+ (?:of|and)\b", re.I)),
    ("a number from somebody's list", re.compile(r"\b(?:[i]ssue|tick[e]t|b[u]g)\s*#?\d+\b|(?<!\w)[J]IRA-\d+", re.I)),
    ("the host of a package registry", re.compile(
        r"\b(?:d[e]b\.debian\.org|p[y]pi\.org|files\.p[y]thonhosted|registry\.n[p]mjs|cr[a]tes\.io|proxy\.g[o]lang)", re.I)),
]

BINARY = (".dwg", ".shp", ".shx", ".dbf", ".png", ".jpg", ".gz", ".zip")


def main():
    root = os.path.abspath(sys.argv[1])
    faults = []
    looked = 0
    for name in project_files(root):
        for what, pattern in PATTERNS:
            if pattern.search("/" + name):
                faults.append(f"{name}: the name tells {what}")
        # seeds and data are survey files, whose words are their own
        if name.endswith(BINARY) or name.startswith(("fuzz/seeds/", "tests/data/")):
            continue
        text = read_text(os.path.join(root, name))
        if text is None:
            continue
        looked += 1
        for number, line in enumerate(text.splitlines(), 1):
            for what, pattern in PATTERNS:
                found = pattern.search(line)
                if found:
                    faults.append(f"{name}:{number}: {what}: '{found.group()}'")
    return finish(faults, f"{looked} files read")


if __name__ == "__main__":
    sys.exit(main())
