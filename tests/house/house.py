"""What the house tests share: the project's files and the list of exported names."""

import os
import re
import subprocess


def project_files(root, suffixes=None):
    """Paths (relative, with '/') of the files that git tracks or would track; without git, of all but build folders."""
    answer = subprocess.run(
        ["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        capture_output=True, check=False)
    if answer.returncode == 0:
        names = sorted(name for name in answer.stdout.decode().split("\0") if name)
        names = [name for name in names if os.path.isfile(os.path.join(root, name))]
    else:
        names = []
        for folder, folders, files in os.walk(root):
            folders[:] = sorted(f for f in folders if f not in (".git", "build"))
            names += [os.path.relpath(os.path.join(folder, f), root) for f in sorted(files)]
    return [name for name in names if suffixes is None or name.endswith(suffixes)]


def read_text(path):
    """The file's text, or None if it isn't text."""
    with open(path, "rb") as file:
        content = file.read()
    if b"\0" in content:
        return None
    return content.decode("utf-8", errors="replace")


def read_list(path):
    """The lines of a list file without comments and blank lines."""
    with open(path, encoding="utf-8") as file:
        lines = [line.split("#")[0].strip() for line in file]
    return [line for line in lines if line]


def read_exported(root):
    """cmake/exported.txt as {kind: [names]}."""
    exported = {"entry": [], "class": [], "inline": [], "namespace": [], "function": []}
    for line in read_list(os.path.join(root, "cmake/exported.txt")):
        kind, name = line.split()
        exported[kind].append(name)
    return exported


def finish(faults, done):
    """Prints the faults, or what was done; gives the exit code."""
    for fault in faults:
        print(fault)
    print(f"{len(faults)} faults" if faults else done)
    return 1 if faults else 0


INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)
