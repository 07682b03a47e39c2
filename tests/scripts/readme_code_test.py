#!/usr/bin/env python3
"""The C++ code of the README stands, line for line, in the program that the tests build and run."""
import pathlib
import re
import sys

project = pathlib.Path(__file__).resolve().parents[2]
blocks = re.findall(r"```cpp\n(.*?)```", (project / "README.md").read_text(), re.DOTALL)
program = [line.strip() for line in (project / "examples/quickstart.cc").read_text().splitlines()]
if not blocks:
    sys.exit("the README has no C++ code")
for block in blocks:
    wanted = [line.strip() for line in block.splitlines() if line.strip()]
    lines = iter(line for line in program if line)
    missing = [line for line in wanted if line not in lines]
    if missing:
        sys.exit("not in examples/quickstart.cc, or in another order: " + missing[0])
print("the README's code is that of examples/quickstart.cc")
