#!/usr/bin/env python3
"""Who may include whom, and that nobody includes in a circle.

The table below is the one of CONTRIBUTING.md. It reads the #include lines of every C++ file under
the project's source folders and fails, naming file and line, on
  - a folder that includes one that it may not see,
  - a quoted include that names no file of the project,
  - a header of the operating system or of another library outside the folder that owns it,
  - files that include each other in a circle.

    scripts/check_includes.py [PROJECT_FOLDER]
"""
import os
import re
import sys
from typing import NamedTuple

# Every folder of the library with the folders that it may include besides itself. A group name is
# short for all folders of that group. "public" is include/kxmessage.
TIERS = {
    "tier0": ["platform/text", "platform/runtime"],
    "tier1": ["platform/host", "platform/paths", "platform/settings"],
    "tier2": ["platform/dom", "platform/datatypes"],
    "tier3": ["platform/patterns", "platform/xdr", "platform/transforms"],
    "tier4": ["core"],
    "tier5": ["schema", "element", "attributes", "content"],
    "tier6": ["core/message"],
    "tier7": ["factory"],
    "tier8": ["component"],
}

# Within a tier a folder sees a neighbour only where it is written here.
NEIGHBOURS = {
    "platform/runtime": ["platform/text"],
    "platform/settings": ["platform/host"],
    "platform/transforms": ["platform/patterns"],
    "element": ["schema"],
    "attributes": ["schema"],
    "content": ["schema"],
}

# Object classes of one tier hand each other out: a source file, never a header, may include a
# neighbour's header of this form.
IMPLEMENTATION_HEADER = re.compile(r"_impl\.h$")
OBJECT_FOLDERS = ["schema", "element", "attributes", "content"]

# Headers that carry values only: every folder may include them.
VALUE_HEADERS = {
    "include/kxmessage/error.h",
    "include/kxmessage/variant.h",
    "include/kxmessage/export.h",
    "include/kxmessage/options.h",
}

# The published numbers of the library's own errors, the errors of loading, and what every handle
# is: for the object model, its ground included.
OBJECT_MODEL_HEADERS = {
    "include/kxmessage/error_codes.h",
    "include/kxmessage/parse_error.h",
    "include/kxmessage/handle.h",
}

# The headers of the operating system and of other libraries, and the folders that own them.
FOREIGN = [
    (re.compile(r"^(libxml|libxslt|libexslt)/"), ["platform/transforms"], "libxslt"),
    (re.compile(r"^curl/"), ["platform/host"], "libcurl"),
    (
        re.compile(
            r"^(sys/|netinet/|arpa/|unistd\.h|fcntl\.h|dirent\.h|pwd\.h|dlfcn\.h|poll\.h|spawn\.h"
            r"|iconv\.h|windows\.h|winsock2\.h|shlobj\.h|langinfo\.h|pthread\.h)"
        ),
        ["platform/host", "tools"],
        "the operating system",
    ),
    (re.compile(r"^CLI/"), ["tools"], "CLI11"),
    (re.compile(r"^(expat\.h|pugixml\.hpp|xercesc/|benchmark/|gtest/|gmock/)"), [], "a test library"),
]

# Folders around the library. The tests, the fuzz targets and the benchmarks see everything; what
# proves the public surface sees the public headers only.
USERS = {"tests": True, "fuzz": True, "bench": True, "tools": False, "bindings": False}
# The example program reads documents through the DOM for as long as there are no message classes.
EXAMPLES_SEE = ["tier0", "tier1", "tier2", "tier3", "tier4", "tier5"]

ROOTS = ["include", "src", "tests", "fuzz", "bench", "examples", "tools", "bindings"]
SEARCH = ["src", "include", "tools", "tests", "fuzz", "bench"]
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"\n]+)"|<([^>\n]+)>)', re.MULTILINE)
BLOCK_COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)


class Include(NamedTuple):
    line: int
    name: str
    quoted: bool


def source_files(project):
    for root in ROOTS:
        for folder, _, names in os.walk(os.path.join(project, root)):
            for name in names:
                if name.endswith((".h", ".cc", ".hpp", ".cpp")):
                    yield os.path.relpath(os.path.join(folder, name), project).replace(os.sep, "/")


def includes_of(project, path):
    with open(os.path.join(project, path), encoding="utf-8", errors="replace") as source:
        text = source.read()
    # A comment keeps its line ends, so that the numbers stay right.
    text = BLOCK_COMMENT.sub(lambda found: "\n" * found.group().count("\n"), text)
    for found in INCLUDE.finditer(text):
        line = text.count("\n", 0, found.start()) + 1
        yield Include(line, found.group(1) or found.group(2), found.group(1) is not None)


def resolve(files, path, name):
    """The project file that a quoted include means, or None."""
    for folder in [os.path.dirname(path)] + SEARCH:
        candidate = os.path.normpath(os.path.join(folder, name)).replace(os.sep, "/")
        if candidate in files:
            return candidate
    return None


def all_folders():
    return [folder for tier in TIERS.values() for folder in tier]


def area_of(path):
    """The area that a file belongs to: a folder of the library, "public", or a folder around it."""
    if path.startswith("include/kxmessage/"):
        return "public"
    if not path.startswith("src/"):
        return path.split("/", 1)[0]
    inner = path[len("src/") :]
    if re.match(r"core/message[^/]*$", inner) or inner.startswith("core/message/"):
        return "core/message"
    matches = [folder for folder in all_folders() if inner.startswith(folder + "/")]
    return max(matches, key=len) if matches else None


def visible_from(area):
    """The areas that `area` may include, itself among them."""
    if area in USERS:
        seen = {area, "public", "tests"}
        return seen | {"tools"} | set(all_folders()) if USERS[area] else seen
    if area == "examples":
        return {area, "public"} | {f for tier in EXAMPLES_SEE for f in TIERS[tier]}
    if area == "public":
        return {"public"}
    order = list(TIERS)
    tier = next(name for name in order if area in TIERS[name])
    seen = {area} | set(NEIGHBOURS.get(area, []))
    for lower in order[: order.index(tier)]:
        seen |= set(TIERS[lower])
    # The objects are what the public classes hold; the ground below does not know them.
    if order.index(tier) >= order.index("tier5"):
        seen.add("public")
    return seen


def may_include(path, target):
    if target in VALUE_HEADERS:
        return True
    source_area, target_area = area_of(path), area_of(target)
    if target_area in visible_from(source_area):
        return True
    if target in OBJECT_MODEL_HEADERS:
        return not source_area.startswith("platform/")
    return (
        path.endswith(".cc")
        and source_area in OBJECT_FOLDERS
        and target_area in OBJECT_FOLDERS
        and IMPLEMENTATION_HEADER.search(target) is not None
    )


def foreign_fault(path, name):
    area = area_of(path)
    if area in USERS and USERS[area]:
        return None
    for pattern, owners, what in FOREIGN:
        if pattern.search(name) and area not in owners:
            home = ", ".join(owners) if owners else "the tests"
            return f"{what} belongs to {home}"
    return None


def find_circle(graph):
    """One circle of files as a list, or an empty list. Iterative: depth is the input's."""
    state = dict.fromkeys(graph, "new")
    for start in graph:
        if state[start] != "new":
            continue
        path, pending = [start], [iter(graph[start])]
        state[start] = "open"
        while path:
            following = next(pending[-1], None)
            if following is None:
                state[path.pop()] = "done"
                pending.pop()
            elif state[following] == "open":
                return path[path.index(following) :] + [following]
            elif state[following] == "new":
                state[following] = "open"
                path.append(following)
                pending.append(iter(graph[following]))
    return []


def check(project):
    """The faults of a project as lines of text, and the number of files read."""
    files = sorted(source_files(project))
    known = set(files)
    graph = {path: [] for path in files}
    faults = []
    for path in files:
        if area_of(path) is None:
            faults.append(f"{path}: lies in no folder of the tier table")
            continue
        for include in includes_of(project, path):
            where = f"{path}:{include.line}: includes {include.name}"
            target = resolve(known, path, include.name) if include.quoted else None
            if target is None:
                fault = foreign_fault(path, include.name)
                if include.quoted:
                    fault = "no file of the project has this name"
                if fault:
                    faults.append(f"{where}: {fault}")
                continue
            graph[path].append(target)
            if area_of(target) is not None and not may_include(path, target):
                faults.append(f"{where}: {area_of(path)} may not include {area_of(target)}")
    circle = find_circle(graph)
    if circle:
        faults.append("a circle of includes: " + " > ".join(circle))
    return faults, len(files)


def main():
    default = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    project = sys.argv[1] if len(sys.argv) > 1 else default
    faults, count = check(project)
    for fault in faults:
        print(fault, file=sys.stderr)
    if count == 0:
        print("check_includes: no source files found", file=sys.stderr)
        return 1
    print(f"check_includes: {count} files, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
