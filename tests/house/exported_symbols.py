"""Holds the dynamic symbols of the shared library against cmake/exported.txt, both ways.

usage: exported_symbols.py ROOT LIBRARY
"""

import os
import re
import subprocess
import sys

from house import finish, project_files, read_exported, read_text

# `class ALIDADE_API CIEData`, `struct ALIDADE_API TIEPoint final`
API_CLASS = re.compile(r"^\s*(?:class|struct)\s+ALIDADE_API\s+(\w+)\b(?!\s*;)", re.M)

ANY_CLASS = re.compile(r"^(?:class|struct)\s+(\w+)\b[^;{]*\{", re.M)

PREFIXES = ("vtable for ", "VTT for ", "typeinfo for ", "typeinfo name for ", "non-virtual thunk to ",
            "virtual thunk to ")


def visible_symbols(library):
    answer = subprocess.run(["nm", "-D", "--defined-only", "--demangle", library],
                            capture_output=True, check=True, text=True)
    return sorted({line.split(" ", 2)[2] for line in answer.stdout.splitlines()})


def owner(symbol, exported):
    """The list line a symbol belongs to, as (kind, name), or None."""
    if symbol in exported["entry"]:
        return "entry", symbol
    for prefix in PREFIXES:
        if symbol.startswith(prefix):
            rest = symbol[len(prefix):]
            for kind in ("class", "inline"):
                for name in exported[kind]:
                    if rest == name or rest.startswith(name + "::"):
                        return kind, name
            return None
    for name in exported["function"]:
        if symbol.startswith((name + "(", name + "[")):  # a result may be marked with its ABI
            return "function", name
    for kind in ("class", "namespace"):
        for name in exported[kind]:
            if symbol.startswith(name + "::"):
                return kind, name
    return None


def main():
    root, library = sys.argv[1:3]
    exported = read_exported(root)
    symbols = visible_symbols(library)

    faults = []
    seen = set()
    for symbol in symbols:
        line = owner(symbol, exported)
        if line is None:
            faults.append(f"visible but not in cmake/exported.txt: {symbol}")
        else:
            seen.add(line)
    for kind, names in exported.items():
        if kind == "inline":
            continue # the compiler is free to leave nothing of it in the library
        faults += [f"in cmake/exported.txt but not visible: {kind} {name}" for name in names if (kind, name) not in seen]

    # the two places that make a class visible must agree, else the linker hides it without a word
    listed = {name.split("::")[-1] for name in exported["class"] + exported["inline"]}
    for name in project_files(root, (".h",)):
        if name.startswith(("src/", "include/")):
            for found in API_CLASS.findall(read_text(os.path.join(root, name))):
                if found not in listed:
                    faults.append(f"{name}: {found} has ALIDADE_API but isn't in cmake/exported.txt")

    # a host that compiles against a class whose code is hidden doesn't link
    sources = "\n".join(read_text(os.path.join(root, name))
                        for name in project_files(root, (".cpp",)) if name.startswith("src/"))
    for name in project_files(root, (".h",)):
        if name.startswith("include/alidade/formats/"):
            faults += [f"{name}: shows {found}, whose code isn't exported"
                       for found in ANY_CLASS.findall(read_text(os.path.join(root, name)))
                       if re.search(rf"^[^\s/].*\b{found}::~?\w+\(", sources, re.M)]
    return finish(faults, f"{len(symbols)} visible symbols, all listed; every listed name is visible")


if __name__ == "__main__":
    sys.exit(main())
