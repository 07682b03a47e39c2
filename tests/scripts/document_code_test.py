#!/usr/bin/env python3
"""The C++ code of documents stands, line for line, in the programs that the tests build and run."""
import pathlib
import re
import sys

project = pathlib.Path(__file__).resolve().parents[2]

# document, the heading of the chapter that is looked at (None: all of it), program
PAIRS = [
    ("README.md", None, "examples/quickstart.cc"),
    ("docs/guide.md", "## Edit a message\n", "examples/guide_editing.cc"),
]


def text_of(document, heading):
    text = (project / document).read_text(encoding="utf-8")
    if heading is None:
        return text
    if text.count(heading) != 1:
        sys.exit(f"{document} has not one chapter {heading.strip()}")
    return re.split(r"^## ", text.split(heading)[1], flags=re.MULTILINE)[0]


for document, heading, source in PAIRS:
    blocks = re.findall(r"```cpp\n(.*?)```", text_of(document, heading), re.DOTALL)
    program = [line.strip() for line in (project / source).read_text().splitlines()]
    if not blocks:
        sys.exit(f"{document} has no C++ code")
    for block in blocks:
        wanted = [line.strip() for line in block.splitlines() if line.strip()]
        lines = iter(line for line in program if line)
        missing = [line for line in wanted if line not in lines]
        if missing:
            sys.exit(f"{document}: not in {source}, or in another order: {missing[0]}")
    print(f"the code of {document} is that of {source}")
