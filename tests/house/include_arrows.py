"""Reads the #include lines of src/ and include/ and fails when an arrow points the wrong way (docs/architecture.md, layers).

usage: include_arrows.py ROOT
What stands in include/ is public; the program and the public headers may include only that.
"""

import os
import sys

from house import INCLUDE, finish, project_files, read_list, read_text

PUBLIC = "alidade/"

# what a folder may include besides itself; the format families are told apart further down
BELOW = {
    "platform": set(),
    "vellumlib": {"platform"},
    "rd3lib": {"platform"},
    "dwgengine": {"platform"},
    "generators": {"platform", "vellumlib"},
    "compare": {"platform", "vellumlib"},
    "jobfile": {"platform", "vellumlib"},
    "frame": {"platform", "vellumlib", "jobfile"},
    "formats": {"platform", "vellumlib", "jobfile", "frame", "rd3lib", "generators"},
    "transfer": {"platform", "vellumlib", "compare", "jobfile", "frame", "rd3lib", "generators", "formats"},
    "cli": {"platform", "vellumlib", "compare", "jobfile", "frame", "rd3lib", "generators", "formats", "transfer"},
}

# dwgengine is joined to the job in one family only
DWG_FAMILY = "formats/dwg"


def family(path):
    """formats/points/sima.h -> formats/points; None for what isn't in a family."""
    parts = path.split("/")
    return "/".join(parts[:2]) if parts[0] == "formats" and len(parts) > 2 else None


def format_of(path):
    """The format a file of a family belongs to: its own folder, or its name without the suffix."""
    rest = path.split("/")[2:]
    return rest[0] if len(rest) > 1 else os.path.splitext(rest[0])[0]


def fault_of(path, target, shared):
    """What is wrong with 'path includes target', or None."""
    here, there = path.split("/")[0], target.split("/")[0]
    if there not in BELOW:
        return "isn't a folder of src/, write the path from there"
    if there == "dwgengine" and here != "dwgengine":
        return None if family(path) == DWG_FAMILY else f"only {DWG_FAMILY} joins the engine to the job"
    if here != there:
        return None if there in BELOW[here] else f"{here} lies below {there} or beside it"
    if here != "formats":
        return None

    # inside formats/
    if family(path) is None or family(target) is None:
        return None
    if family(path) != family(target):
        return "a format doesn't include another family"
    if target in shared or path.endswith("/formats.cpp") or format_of(path) == format_of(target):
        return None
    return "a format doesn't include another format (what a family shares is listed in src/formats/shared.txt)"


def main():
    root = os.path.abspath(sys.argv[1])
    src = os.path.join(root, "src")
    shared = set(read_list(os.path.join(src, "formats/shared.txt")))

    faults = []
    arrows = 0
    for name in project_files(root, (".h", ".cpp")):
        if not name.startswith(("src/", "include/alidade/")):
            continue
        is_public = name.startswith("include/")
        path = name[len("include/alidade/") if is_public else len("src/"):]
        here = path.split("/")[0]
        if here not in BELOW:
            faults.append(f"{name}: no layer is told for the folder {here}")
            continue
        for target in INCLUDE.findall(read_text(os.path.join(root, name))):
            arrows += 1
            to_public = target.startswith(PUBLIC)
            fault = fault_of(path, target.removeprefix(PUBLIC), shared)
            if fault is None and not os.path.isfile(os.path.join(root, "include" if to_public else "src", target)):
                fault = "there is no such file"
            if fault is None and not to_public:
                if is_public:
                    fault = "a public header includes only public headers"
                elif here == "cli" and not target.startswith("cli/"):
                    fault = "the program is a host: it includes only public headers"
            if fault is not None:
                faults.append(f'{name}: #include "{target}": {fault}')

    for path in sorted(shared):
        if not any(os.path.isfile(os.path.join(root, top, path)) for top in ("src", "include/alidade")):
            faults.append(f"src/formats/shared.txt: there is no {path}")
    return finish(faults, f"{arrows} arrows point the right way")


if __name__ == "__main__":
    sys.exit(main())
