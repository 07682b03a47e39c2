#!/usr/bin/env python3
"""Turns a list of changed files (standard input) into source files that clang-tidy can check.

A source file stands for itself when the build folder (first argument) compiles it. A header is
stood for by the source file of the same name, else by a compiled file that includes it. LIMIT in
the environment bounds how many are printed; 0 is no bound.
"""
import json
import os
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def compiled_files(build):
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as commands:
        entries = json.load(commands)
    root = os.getcwd()
    paths = (os.path.relpath(os.path.join(e["directory"], e["file"]), root) for e in entries)
    return sorted({path for path in paths if not path.startswith("..")})


def includers_by_name(files):
    """Header's file name -> compiled files that include a header of that name."""
    found = {}
    for path in files:
        with open(path, encoding="utf-8", errors="replace") as source:
            for included in INCLUDE.findall(source.read()):
                found.setdefault(os.path.basename(included), []).append(path)
    return found


def source_of(path, compiled, includers):
    if not path.endswith(".h"):
        return path if path in compiled else None
    twin = path[: -len(".h")] + ".cc"
    if twin in compiled:
        return twin
    candidates = includers.get(os.path.basename(path), [])
    # A neighbour in the same folder is the likeliest to use all of it.
    candidates.sort(key=lambda c: (os.path.dirname(c) != os.path.dirname(path), c))
    return candidates[0] if candidates else None


def main():
    compiled = compiled_files(sys.argv[1])
    includers = includers_by_name(compiled)
    limit = int(os.environ.get("LIMIT", "0"))
    compiled_set = set(compiled)
    chosen = []
    for line in sys.stdin:
        source = source_of(line.strip(), compiled_set, includers) if line.strip() else None
        if source and source not in chosen:
            chosen.append(source)
        if limit and len(chosen) == limit:
            break
    print("\n".join(chosen), end="\n" if chosen else "")


if __name__ == "__main__":
    main()
